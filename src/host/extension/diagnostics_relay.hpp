// Hands on what an extension writes for a person, within bounds: so much a process, and never waiting for a reader.
#pragma once

#include <cstddef>

namespace host {

class DiagnosticsRelay {
 public:
  /// The most that one process may say, in bytes; what it writes beyond that is read and dropped.
  static constexpr std::size_t most = std::size_t{16} << 10;

  /// `to` may be -1: everything is dropped. Owns neither descriptor.
  explicit DiagnosticsRelay(int to) : to_(to) {}

  /// Moves what is there now; `from` is non-blocking. False at its end.
  bool pump(int from);

 private:
  void write(const char* bytes, std::size_t count);

  int to_;
  std::size_t written_ = 0;
};

}  // namespace host
