// One instant that every wait of an operation shares, so that the whole is bounded and not each of its steps.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace platform {

class Deadline {
 public:
  explicit Deadline(std::chrono::steady_clock::duration fromNow) : end_(std::chrono::steady_clock::now() + fromNow) {}

  bool passed() const { return std::chrono::steady_clock::now() >= end_; }
  std::chrono::steady_clock::time_point end() const { return end_; }

  /// Never less than zero.
  std::chrono::microseconds left() const {
    const auto left = end_ - std::chrono::steady_clock::now();
    return std::max(std::chrono::ceil<std::chrono::microseconds>(left), std::chrono::microseconds::zero());
  }

 private:
  std::chrono::steady_clock::time_point end_;
};

}  // namespace platform
