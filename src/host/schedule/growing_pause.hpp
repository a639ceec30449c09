// Pauses that grow: how a host keeps from asking an extension in a storm when asking does no good.
#pragma once

#include <random>

#include <absl/time/time.h>

namespace host {

/// Doubles from `first` up to `longest`, each pause 20 % shorter or longer by chance, so that many hosts do not come
/// back at the same instant.
class GrowingPause {
 public:
  GrowingPause(absl::Duration first, absl::Duration longest, std::uint64_t seed = std::random_device{}())
      : first_(first), longest_(longest), next_(first), random_(seed) {}

  absl::Duration next();
  /// Begins again with the first pause.
  void reset() { next_ = first_; }

 private:
  absl::Duration first_;
  absl::Duration longest_;
  absl::Duration next_;
  std::mt19937_64 random_;
};

}  // namespace host
