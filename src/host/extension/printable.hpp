// Texts of another process, made fit for a person's terminal.
#pragma once

#include <string>
#include <string_view>

namespace host {

/// Lets through valid UTF-8 without control characters (but line ends and tabs), without the C1 controls in either form
/// and without what overrides the direction of text; each of these, and each byte that is not UTF-8, becomes "?". What
/// arrives may be cut anywhere.
class PrintableStream {
 public:
  /// What can be shown of these bytes, and of an unfinished character before them.
  std::string pass(std::string_view bytes);
  /// What is left of an unfinished character at the end.
  std::string finish();

 private:
  std::string pending_;  ///< the start of a character: up to three bytes
};

/// The same for a whole text.
std::string printable(std::string_view text);

}  // namespace host
