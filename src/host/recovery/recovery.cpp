#include "host/recovery/recovery.hpp"

namespace host {

void SystemRecovery::begin() {
  if (!credentials_) credentials_.emplace();
  if (!network_) network_.emplace();
}

void SystemRecovery::end() {
  credentials_.reset();
  network_.reset();
}

std::vector<int> SystemRecovery::descriptors() const {
  std::vector<int> descriptors;
  if (credentials_) descriptors = credentials_->descriptors();
  if (network_) descriptors.push_back(network_->descriptor());
  return descriptors;
}

Recovery::Signs SystemRecovery::take() {
  return {.credentials = credentials_ && credentials_->take(), .network = network_ && network_->take()};
}

}  // namespace host
