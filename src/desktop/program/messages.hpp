// Messages of the desktop to a person, on standard error.
#pragma once

#include <string>

#include "host/diagnostics/diagnostics.hpp"

namespace desktop {

class Messages {
 public:
  explicit Messages(bool verbose) : verbose_(verbose) {}

  /// From any thread.
  void say(const std::string& sentence) const { host::say(host::Priority::warning, sentence); }
  void sayIfVerbose(const std::string& sentence) const {
    if (verbose_) host::say(host::Priority::debug, sentence);
  }

 private:
  bool verbose_;
};

}  // namespace desktop
