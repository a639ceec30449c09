// Header fields and a response of any bytes. No request header becomes two fields on the wire, and a response is
// collected completely or refused as too large.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/url_session/request_headers.hpp"
#include "platform/url_session/response_collector.hpp"
#include "require.hpp"

namespace {

using namespace platform;
using fuzz::require;

/// The pieces between the bytes 0xFF.
std::vector<std::string> piecesOf(std::string_view bytes) {
  std::vector<std::string> pieces(1);
  for (const char byte : bytes) {
    if (byte == '\xff') {
      pieces.emplace_back();
    } else {
      pieces.back() += byte;
    }
  }
  return pieces;
}

void sendFields(const std::vector<std::string>& pieces) {
  std::vector<HeaderField> fields;
  for (std::size_t i = 0; i + 1 < pieces.size(); i += 2) fields.push_back({pieces[i], pieces[i + 1]});
  const auto headers = RequestHeaders::encode(fields);
  if (!headers) return;
  require(headers->lines.size() == fields.size() + (headers->endsInLineEnd ? 1 : 0));
  for (std::size_t i = 0; i < headers->lines.size(); ++i) {
    std::string_view line = headers->lines[i].text();
    require(line.find('\0') == std::string_view::npos);
    if (headers->endsInLineEnd && i + 1 == headers->lines.size()) {
      require(line.ends_with('\r') || line.ends_with('\n'));
      line.remove_suffix(line.ends_with("\r\n") ? 2 : 1);
    }
    require(line.find_first_of("\r\n") == std::string_view::npos);
    require(line.find_first_of(":;") != std::string_view::npos);
  }
}

void receive(const std::vector<std::string>& pieces) {
  constexpr std::size_t longest = 100;
  ResponseCollector collector(longest);
  std::string body;
  bool inHeader = true;
  for (const std::string& piece : pieces) {
    if (inHeader) {
      if (!collector.takeHeaderLine(piece + "\r\n")) break;
      inHeader = !collector.hasWholeHeader();
    } else {
      body += piece;
      const bool taken = collector.takeBodyPiece(piece, [] { return std::optional<std::size_t>(); });
      require(taken == (body.size() <= longest));
      if (!taken) break;
    }
  }
  require(collector.isTooLarge() || collector.takeBody() == body);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto pieces = piecesOf({reinterpret_cast<const char*>(data), size});
  sendFields(pieces);
  receive(pieces);
  return 0;
}
