#include "host/extension/printable.hpp"

#include "base/text/control_characters.hpp"

namespace host {

std::string printable(std::string_view text) {
  return base::replaceControls(text, [](char32_t control) {
    const bool layout = control == U'\n' || control == U'\t';
    return std::string(1, layout ? static_cast<char>(control) : '?');
  });
}

}  // namespace host
