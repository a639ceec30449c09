// Pauses that grow: how a host avoids asking an extension in a storm when asking does no good.
#pragma once

#include <algorithm>
#include <utility>

#include <absl/time/time.h>

namespace host {

/// Doubles from `first` up to `longest`: 1 s, 2 s, 4 s, 8 s for (1 s, 8 s), then 8 s each time.
class GrowingPause {
 public:
  GrowingPause(absl::Duration first, absl::Duration longest) : first_(first), longest_(longest), next_(first) {}

  absl::Duration next() { return std::exchange(next_, std::min(next_ * 2, longest_)); }
  /// Begins again with the first pause.
  void reset() { next_ = first_; }

 private:
  absl::Duration first_;
  absl::Duration longest_;
  absl::Duration next_;
};

}  // namespace host
