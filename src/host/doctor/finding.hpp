// What `vamba-host doctor` finds out about one thing, and how it is written.
#pragma once

#include <string>

namespace host {

enum class Verdict {
  works,
  note,   ///< does not work, but only a part of the program needs it
  fault,  ///< does not work, and without it there is no day on the board
};

struct Finding {
  std::string subject;  ///< "time zone"
  Verdict verdict = Verdict::works;
  std::string what;         ///< what is in use, or why it does not work; holds no secret
  std::string advice = {};  ///< what a person can do about it; whole sentences, or empty
  bool operator==(const Finding&) const = default;
};

/// One line, and the advice on a second one. Control characters become "?".
///
///   ok     time zone       Europe/Warsaw, as /etc/localtime says; it is 12:31
///   fault  token           none is kept
///                          Sign in with "vamba-host sign-in".
std::string inWords(const Finding& finding);

}  // namespace host
