// Messages of the desktop to a person, on standard error.
#pragma once

#include <cstdio>
#include <string>

namespace desktop {

class Journal {
 public:
  explicit Journal(bool verbose) : verbose_(verbose) {}

  /// From any thread.
  void say(const std::string& sentence) const { std::fprintf(stderr, "vamba-host: %s\n", sentence.c_str()); }
  void sayIfVerbose(const std::string& sentence) const {
    if (verbose_) say(sentence);
  }

 private:
  bool verbose_;
};

}  // namespace desktop
