// Reports what a store refused and why, each refusal once.
#pragma once

#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <string_view>

namespace platform {

/// Takes one line of text for the user, without a line end and without a secret. Called from any thread, one call at a
/// time.
using DiagnosticSink = std::function<void(std::string_view)>;

/// Safe to use from many threads.
class Refusals {
 public:
  explicit Refusals(DiagnosticSink sink);

  /// Control characters of the path are written as `\x1b`, so that a folder's name cannot send escape sequences.
  void report(std::string_view path, std::string_view fault);

 private:
  DiagnosticSink sink_;
  std::mutex mutex_;
  std::set<std::string> said_;
};

}  // namespace platform
