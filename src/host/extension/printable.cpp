#include "host/extension/printable.hpp"

namespace host {
namespace {

bool isControl(unsigned char byte) { return (byte < 0x20 && byte != '\n' && byte != '\t') || byte == 0x7f; }

}  // namespace

std::string printable(std::string_view text) {
  std::string result(text);
  for (std::size_t i = 0; i < result.size(); ++i) {
    const auto byte = static_cast<unsigned char>(result[i]);
    if (isControl(byte)) result[i] = '?';
    // U+0080 to U+009F, among them the one-character start of an escape sequence: C2 80 to C2 9F in UTF-8.
    if (byte == 0xc2 && i + 1 < result.size()) {
      const auto following = static_cast<unsigned char>(result[i + 1]);
      if (following >= 0x80 && following <= 0x9f) result.replace(i, 2, "?");
    }
  }
  return result;
}

}  // namespace host
