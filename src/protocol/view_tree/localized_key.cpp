#include "protocol/view_tree/localized_key.hpp"

namespace protocol {

std::string withArguments(std::string_view format, std::span<const std::int64_t> arguments) {
  constexpr std::string_view placeholder = "%lld";
  std::string text;
  for (const std::int64_t argument : arguments) {
    const auto found = format.find(placeholder);
    if (found == std::string_view::npos) break;
    text.append(format.substr(0, found)).append(std::to_string(argument));
    format.remove_prefix(found + placeholder.size());
  }
  return text.append(format);
}

std::string asWritten(const LocalizedKey& key) { return withArguments(key.key, key.arguments); }

}  // namespace protocol
