#include "base/text/control_characters.hpp"

#include "base/text/utf8.hpp"

namespace base {

bool holdsControl(std::string_view text) {
  while (!text.empty()) {
    if (isControl(takeCharacter(text))) return true;
  }
  return false;
}

std::string replaceControls(std::string_view text, absl::FunctionRef<std::string(char32_t control)> replacement) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const std::string_view before = text;
    const char32_t character = takeCharacter(text);
    if (isControl(character)) {
      result += replacement(character);
    } else {
      result += before.substr(0, before.size() - text.size());
    }
  }
  return result;
}

}  // namespace base
