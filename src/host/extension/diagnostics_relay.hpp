// Passes on what an extension writes for a person, within bounds: a limited number of bytes for each process, no
// control characters, and no waiting for a reader. Lines for a journal get a priority.
#pragma once

#include <cstddef>
#include <string_view>

#include "host/extension/printable.hpp"

namespace host {

class DiagnosticsRelay {
 public:
  /// The most that one process may say, in bytes; what it writes beyond that is read and dropped.
  static constexpr std::size_t most = std::size_t{16} << 10;

  /// `to` may be -1: everything is dropped. Owns neither descriptor.
  explicit DiagnosticsRelay(int to);

  /// Moves what is there now; `from` is non-blocking. False at its end.
  bool pump(int from);

 private:
  void write(const char* bytes, std::size_t count);

  int to_;
  PrintableStream printable_;
  std::string_view linePrefix_;  ///< for the journal
  bool atLineStart_ = true;
  std::size_t written_ = 0;
};

}  // namespace host
