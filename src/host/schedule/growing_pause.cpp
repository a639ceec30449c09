#include "host/schedule/growing_pause.hpp"

#include <algorithm>

namespace host {

absl::Duration GrowingPause::next() {
  const absl::Duration pause = next_ * std::uniform_real_distribution(0.8, 1.2)(random_);
  next_ = std::min(next_ * 2, longest_);
  return std::min(pause, longest_);
}

}  // namespace host
