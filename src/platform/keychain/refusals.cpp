#include "platform/keychain/refusals.hpp"

#include <cstddef>
#include <utility>

#include "base/text/control_characters.hpp"

namespace platform {
namespace {

// A process asks for a handful of items. This bounds the memory if something asks for many.
constexpr std::size_t mostRefusals = 64;

std::string printable(std::string_view text) {
  return base::replaceControls(text, [](char32_t control) {
    constexpr std::string_view digits = "0123456789abcdef";
    return std::string{'\\', 'x', digits[control >> 4], digits[control & 0xf]};
  });
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
