// The entry's JSON form, in which it travels to the host and back (docs/protocol.md).
#pragma once

#include "platform/widget_kit/static_configuration.hpp"
#include "widzety/timeline/wpis.hpp"

/// Keys are the fields' names; an absent optional is an absent key. Reading takes null for absent, ignores keys it does
/// not know, and names the field that does not decode ("zadania[2].termin: not an instant").
template <>
struct platform::EntryForm<widzety::Wpis> {
  static EntryJson toJson(const widzety::Wpis& wpis);
  static std::expected<widzety::Wpis, std::string> fromJson(const nlohmann::json& json);
};
