// Requests and responses of JSON-RPC 2.0, one object a line, without batches. Knows no methods or parameters.
#pragma once

#include <cstddef>
#include <expected>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace protocol::json_rpc {

/// The most JSON values that either side reads in one line. Each takes some hundred bytes of memory, whatever the
/// line's length.
inline constexpr std::size_t mostValues = 750'000;

/// JSON-RPC 2.0, section 5.1.
enum class ErrorCode : int {
  parseError = -32700,
  invalidRequest = -32600,
  methodNotFound = -32601,
  invalidParams = -32602,
};

struct Error {
  int code;
  std::string message;

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
std::expected<Request, Response> parseRequest(std::string_view line);

/// The error is a short sentence for a person, or `base::tooManyValues`.
std::expected<Response, std::string> parseResponse(std::string_view line);

// Each gives one line without its line end, always valid UTF-8.

/// `params` is JSON text without a line end; empty: none.
std::string requestLine(const nlohmann::json& id, std::string_view method, std::string_view params);
/// By value: a result may be large, and is moved into the line's object.
std::string toLine(Response response);
/// The line of a response whose result is already written: `result` is JSON text without a line end.
std::string resultLine(const nlohmann::json& id, std::string_view result);

}  // namespace protocol::json_rpc
