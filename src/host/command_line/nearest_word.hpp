// The word that a person probably meant.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace host {

/// The word that is the fewest changes of a letter (one more, one less, another, two swapped) away from the given one,
/// if these are at most a third of its letters: "shwo" -> "show", "--familly" -> "--family"; none for "frobnicate".
std::optional<std::string> nearestWord(std::string_view given, std::span<const std::string> words);

}  // namespace host
