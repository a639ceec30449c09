// The end of a process that an exception would otherwise end by a signal.
#pragma once

#include <cstdlib>
#include <cstring>
#include <exception>
#include <initializer_list>

#include <unistd.h>

namespace base {

/// Ends the process with status 1 and one line on standard error where an exception is not caught, usually for lack of
/// memory. `program` is the line's beginning and must be a literal.
inline void endProcessOnUncaughtException(const char* program) {
  static const char* beginning = nullptr;
  beginning = program;
  // Nothing here may allocate.
  std::set_terminate([] {
    for (const char* const text : {beginning, ": ended by an error that it cannot recover from; is memory short?\n"}) {
      [[maybe_unused]] const auto ignored = ::write(STDERR_FILENO, text, std::strlen(text));
    }
    _exit(EXIT_FAILURE);
  });
}

}  // namespace base
