// A name look-up that does not answer: host names that end in ".silent" keep their resolver thread waiting until the
// scope ends. Works by standing in front of the C library's getaddrinfo for the whole test program.
#pragma once

namespace platform {

class SilentResolver {
 public:
  SilentResolver();
  /// Lets every look-up that waits fail, and waits until all have left.
  ~SilentResolver();
  SilentResolver(const SilentResolver&) = delete;
  SilentResolver& operator=(const SilentResolver&) = delete;

  /// Until a look-up is under way. False when there is none within `support::longPatience`.
  static bool waitForLookUp();
};

}  // namespace platform
