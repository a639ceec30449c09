#include "platform/url_session/response_collector.hpp"

#include <algorithm>

#include "platform/url/ascii.hpp"

namespace platform {
namespace {

// HTTP sets no limit for a header section. Real services stay far below this one.
constexpr std::size_t longestHeader = std::size_t{1} << 20;

// "HTTP/1.1 103 Early Hints" is followed by another header section. 101 is not: it is the answer itself, as no upgrade
// was asked for.
bool isProvisional(std::string_view statusLine) {
  const auto blank = statusLine.find(' ');
  if (blank == std::string_view::npos) return false;
  const std::string_view status = statusLine.substr(blank + 1, 3);
  return status.size() == 3 && status[0] == '1' && status != "101";
}

}  // namespace

bool ResponseCollector::takeHeaderLine(std::string_view line) {
  headerLength_ += line.size();
  if (headerLength_ > longestHeader) {
    tooLarge_ = true;
    return false;
  }
  if (headerIsWhole_) return true;  // a trailer
  if (ascii::equalsIgnoringCase(line.substr(0, 5), "HTTP/")) {
    headerIsProvisional_ = isProvisional(line);
  } else if (line == "\r\n" || line == "\n") {
    headerIsWhole_ = !headerIsProvisional_;
  }
  return true;
}

bool ResponseCollector::append(std::string_view piece) {
  if (piece.size() > longestBody_ - body_.size()) {
    tooLarge_ = true;
    body_ = {};
    return false;
  }
  body_.append(piece);
  return true;
}

void ResponseCollector::makeRoom(std::optional<std::size_t> expectedLength) {
  if (expectedLength) body_.reserve(std::min(*expectedLength, longestBody_));
}

}  // namespace platform
