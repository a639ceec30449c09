// Requests and responses of JSON-RPC 2.0, one object a line, without batches. Knows no methods or parameters.
#pragma once

#include <cstddef>
#include <expected>
#include <limits>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace protocol::json_rpc {

/// JSON-RPC 2.0, section 5.1.
enum class ErrorCode : int {
  parseError = -32700,
  invalidRequest = -32600,
  methodNotFound = -32601,
  invalidParams = -32602,
  internalError = -32603,
};

struct Error {
  int code;
  std::string message;
  nlohmann::json data = nullptr;  ///< null: none

  bool operator==(const Error&) const = default;
};

Error makeError(ErrorCode code, std::string message);

struct Request {
  nlohmann::json id;            ///< null, a string or a number (64-bit integers exact)
  bool isNotification = false;  ///< has no id (which differs from the id null) and gets no response
  std::string method;
  nlohmann::json params;  ///< an array, an object, or null where absent
};

struct Response {
  nlohmann::json id;  ///< null where the request's is unknown
  std::expected<nlohmann::json, Error> outcome;
};

/// For a line that is not a request the error is the response to send: parseError or invalidRequest, with the request's
/// id if the line has a usable one.
/// `mostValues` as of `parseJson`.
std::expected<Request, Response> parseRequest(std::string_view line,
                                              std::size_t mostValues = std::numeric_limits<std::size_t>::max());

/// The error is a short sentence for a person.
std::expected<Response, std::string> parseResponse(std::string_view line,
                                                   std::size_t mostValues = std::numeric_limits<std::size_t>::max());

/// One line without its line end, always valid UTF-8.
std::string toLine(const Request& request);
/// By value: a result may be large, and is moved into the line's object.
std::string toLine(Response response);
/// The line of a response whose result is already written: `result` is JSON text without a line end.
std::string resultLine(const nlohmann::json& id, std::string_view result);

}  // namespace protocol::json_rpc
