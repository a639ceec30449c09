#include "protocol/json_rpc/message.hpp"

#include <cstdint>
#include <utility>

#include "base/json/json_text.hpp"

namespace protocol::json_rpc {
namespace {

using nlohmann::json;

bool isId(const json& value) { return value.is_null() || value.is_string() || value.is_number(); }

bool isVersionTwo(const json& object) {
  const auto version = object.find("jsonrpc");
  return version != object.end() && *version == "2.0";
}

std::expected<Error, std::string> parseErrorObject(json& value) {
  if (!value.is_object()) return std::unexpected("\"error\" is not an object");
  const auto code = value.find("code");
  if (code == value.end() || !code->is_number_integer()) return std::unexpected("\"code\" is not an integer");
  const bool fits = code->is_number_unsigned() ? std::in_range<int>(code->get<std::uint64_t>())
                                               : std::in_range<int>(code->get<std::int64_t>());
  if (!fits) return std::unexpected("\"code\" is out of range");
  const auto message = value.find("message");
  if (message == value.end() || !message->is_string()) return std::unexpected("\"message\" is not a string");
  return Error{.code = code->get<int>(), .message = std::move(message->get_ref<std::string&>())};
}

}  // namespace

Error makeError(ErrorCode code, std::string message) {
  return {.code = static_cast<int>(code), .message = std::move(message)};
}

std::expected<Request, Response> parseRequest(std::string_view line) {
  json id;
  const auto refuse = [&id](ErrorCode code, std::string message) {
    return std::unexpected(Response{.id = id, .outcome = std::unexpected(makeError(code, std::move(message)))});
  };

  auto parsed = base::parseJson(line, mostValues);
  if (!parsed) return refuse(ErrorCode::parseError, parsed.error());
  json& object = *parsed;
  if (!object.is_object()) return refuse(ErrorCode::invalidRequest, "a request is one object");

  Request request{.isNotification = !object.contains("id")};
  if (!request.isNotification) {
    json& given = object["id"];
    if (!isId(given)) return refuse(ErrorCode::invalidRequest, "\"id\" is not null, a string or a number");
    id = std::move(given);
  }
  if (!isVersionTwo(object)) return refuse(ErrorCode::invalidRequest, "\"jsonrpc\" is not \"2.0\"");
  const auto method = object.find("method");
  if (method == object.end() || !method->is_string()) {
    return refuse(ErrorCode::invalidRequest, "\"method\" is not a string");
  }
  request.method = std::move(method->get_ref<std::string&>());
  if (const auto params = object.find("params"); params != object.end()) {
    if (!params->is_structured() && !params->is_null()) {
      return refuse(ErrorCode::invalidRequest, "\"params\" is not an object or an array");
    }
    request.params = std::move(*params);
  }
  request.id = std::move(id);
  return request;
}

std::expected<Response, std::string> parseResponse(std::string_view line) {
  auto parsed = base::parseJson(line, mostValues);
  if (!parsed) return std::unexpected(parsed.error());
  json& object = *parsed;
  if (!object.is_object() || !isVersionTwo(object)) return std::unexpected("not a JSON-RPC 2.0 object");
  const auto id = object.find("id");
  if (id == object.end() || !isId(*id)) return std::unexpected("\"id\" is not null, a string or a number");
  const auto result = object.find("result");
  const auto error = object.find("error");
  if ((result == object.end()) == (error == object.end())) {
    return std::unexpected("not exactly one of \"result\" and \"error\"");
  }
  if (result != object.end()) return Response{.id = std::move(*id), .outcome = std::move(*result)};
  auto fault = parseErrorObject(*error);
  if (!fault) return std::unexpected(fault.error());
  return Response{.id = std::move(*id), .outcome = std::unexpected(std::move(*fault))};
}

std::string requestLine(const json& id, std::string_view method, std::string_view params) {
  std::string line = R"({"id":)" + base::toText(id) + R"(,"jsonrpc":"2.0","method":)" + base::toText(method);
  if (!params.empty()) line.append(R"(,"params":)").append(params);
  return line + "}";
}

std::string toLine(Response response) {
  json object{{"jsonrpc", "2.0"}, {"id", response.id}};
  if (response.outcome) {
    object["result"] = *std::move(response.outcome);
  } else {
    const Error& error = response.outcome.error();
    object["error"] = json{{"code", error.code}, {"message", error.message}};
  }
  return base::toText(object);
}

std::string resultLine(const json& id, std::string_view result) {
  const std::string beginning = R"({"id":)" + base::toText(id) + R"(,"jsonrpc":"2.0","result":)";
  std::string line;
  line.reserve(beginning.size() + result.size() + 2);  // a line end may follow
  return line.append(beginning).append(result).append("}");
}

}  // namespace protocol::json_rpc
