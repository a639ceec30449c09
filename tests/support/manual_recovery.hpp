// Signs of recovery as a test gives them.
#pragma once

#include <utility>

#include "host/recovery/recovery.hpp"

namespace support {

class ManualRecovery final : public host::Recovery {
 public:
  bool watching() const { return watching_; }
  /// Comes only while somebody watches, as in life.
  void give(Signs signs) {
    if (watching_) signs_ = signs;
  }

  void begin() override { watching_ = true; }
  void end() override {
    watching_ = false;
    signs_ = {};
  }
  std::vector<int> descriptors() const override { return {}; }
  Signs take() override { return std::exchange(signs_, {}); }

 private:
  bool watching_ = false;
  Signs signs_;
};

}  // namespace support
