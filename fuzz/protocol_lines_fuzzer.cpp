// Any bytes as a line, read as a request and as a response. What is accepted reads back equal after it is written, what
// is refused is answered with a well-formed error, and what is written is one line of UTF-8.
#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/json/json_text.hpp"
#include "base/text/utf8.hpp"
#include "protocol/json_rpc/message.hpp"
#include "require.hpp"

namespace {

using namespace protocol::json_rpc;
using fuzz::require;

std::string checked(std::string line) {
  require(base::isUtf8(line) && std::ranges::none_of(line, [](unsigned char c) { return c < 0x20; }));
  return line;
}

void readRequest(std::string_view bytes) {
  const auto request = parseRequest(bytes);
  if (!request) {
    const auto error = parseResponse(checked(toLine(request.error())));
    require(error && !error->outcome);
    require(error->outcome.error().code == -32700 || error->outcome.error().code == -32600);
    return;
  }
  const std::string params = request->params.is_null() ? "" : base::toText(request->params);
  const auto again = parseRequest(checked(requestLine(request->id, request->method, params)));
  require(again && again->id == request->id && again->method == request->method && again->params == request->params);
}

void readResponse(std::string_view bytes) {
  const auto response = parseResponse(bytes);
  if (!response) {
    require(!response.error().empty());
    return;
  }
  const auto again = parseResponse(checked(toLine(*response)));
  require(again && again->id == response->id && again->outcome == response->outcome);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  readRequest(bytes);
  readResponse(bytes);
  return 0;
}
