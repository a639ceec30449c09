#include "base/text/utf8.hpp"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include <utf8proc.h>

namespace base {
namespace {

/// How many bytes at the front of `bytes` are ASCII; eight are looked at in one go.
std::size_t asciiLength(std::string_view bytes) {
  constexpr std::uint64_t highBits = 0x8080808080808080U;
  std::size_t length = 0;
  std::uint64_t eight = 0;
  for (; bytes.size() - length >= sizeof eight; length += sizeof eight) {
    std::memcpy(&eight, bytes.data() + length, sizeof eight);
    if ((eight & highBits) != 0) break;
  }
  while (length < bytes.size() && static_cast<unsigned char>(bytes[length]) < 0x80) ++length;
  return length;
}

}  // namespace

bool isUtf8(std::string_view bytes) {
  while (true) {
    bytes.remove_prefix(asciiLength(bytes));
    if (bytes.empty()) return true;
    utf8proc_int32_t codePoint = 0;
    const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(bytes.data()),
                                         static_cast<utf8proc_ssize_t>(bytes.size()), &codePoint);
    if (length <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(length));
  }
}

}  // namespace base
