#include "platform/keychain/refusals.hpp"

#include <cstddef>
#include <utility>

namespace platform {
namespace {

// A process asks for a handful of items; past this many different refusals something is odd, and memory matters more.
constexpr std::size_t mostRefusals = 64;

std::string printable(std::string_view text) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string shown;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte != 0x7f) {
      shown += c;
    } else {
      shown += {'\\', 'x', digits[byte >> 4], digits[byte & 0xf]};
    }
  }
  return shown;
}

}  // namespace

Refusals::Refusals(DiagnosticSink sink) : sink_(std::move(sink)) {}

void Refusals::report(std::string_view path, std::string_view fault) {
  auto line = "keychain: " + printable(path) + " refused: " + std::string(fault);
  const std::lock_guard lock(mutex_);
  if (said_.size() >= mostRefusals || !said_.insert(line).second) return;
  if (sink_) sink_(line);
}

}  // namespace platform
