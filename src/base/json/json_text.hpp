// JSON text to value and back, within the bounds that a line from another process needs: nesting and memory are
// limited while reading, and what is written is always valid UTF-8 on one line.
#pragma once

#include <cstddef>
#include <expected>
#include <limits>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace base {

/// Arrays and objects inside one another beyond this are refused.
inline constexpr std::size_t maximumNesting = 512;

/// White space between two values beyond this, in bytes, is refused: the library takes some thirty bytes of memory for
/// each line end when it reports an error after them.
inline constexpr std::size_t longestWhiteSpace = std::size_t{64} << 10;

/// The error where a text holds more values than the caller takes.
inline constexpr std::string_view tooManyValues = "too many values";

/// Reads one JSON value (RFC 8259; strictly UTF-8; only white space around it). Integers of 64 bits are exact; of equal
/// keys the last counts. A text of more than `mostValues` values is refused. The error is a short sentence for a
/// person.
std::expected<nlohmann::json, std::string> parseJson(std::string_view text,
                                                     std::size_t mostValues = std::numeric_limits<std::size_t>::max());

/// Shortens a JSON text without parsing it: keeps one byte of each run of white space between values, and of each
/// string longer than `longestString` that many bytes and the rest of the last character or escape. Stops once the
/// result is longer than `longest`.
std::string shortened(std::string_view text, std::size_t longestString, std::size_t longest);

/// Compact text on one line, without controls below U+0020. Bytes of a string that are not UTF-8 become U+FFFD.
std::string toText(const nlohmann::json& value);

/// The same for a person's terminal: DEL and the controls U+0080 to U+009F are escaped too. The text may be six times
/// as long.
std::string toPrintableText(const nlohmann::json& value);

}  // namespace base
