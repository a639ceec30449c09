// Where the values of a JSON text end. Looks no closer than that: whether the text is JSON is json_grammar.hpp's
// matter.
#pragma once

#include <string_view>

namespace platform {

std::string_view withoutBlanksInFront(std::string_view text);

/// The literal or number that `text` begins with: all up to the next blank or separator.
std::string_view scalarInFront(std::string_view text);

/// The whole value that `text`, which must have been checked, begins with.
std::string_view valueInFront(std::string_view text);

}  // namespace platform
