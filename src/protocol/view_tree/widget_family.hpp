// The sizes of a widget's board, and their names in the protocol.
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace protocol {

enum class WidgetFamily { systemSmall, systemMedium, systemLarge };

inline constexpr std::array<std::string_view, 3> widgetFamilyNames{"systemSmall", "systemMedium", "systemLarge"};

constexpr std::string_view nameOf(WidgetFamily family) { return widgetFamilyNames[static_cast<std::size_t>(family)]; }

constexpr std::optional<WidgetFamily> widgetFamilyNamed(std::string_view name) {
  for (std::size_t i = 0; i < widgetFamilyNames.size(); ++i) {
    if (widgetFamilyNames[i] == name) return static_cast<WidgetFamily>(i);
  }
  return std::nullopt;
}

}  // namespace protocol
