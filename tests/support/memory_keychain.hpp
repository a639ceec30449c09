// A keychain in memory for tests that are about something else; it counts what it is asked.
#pragma once

#include <map>
#include <mutex>
#include <new>
#include <string>

#include "platform/keychain/keychain.hpp"

namespace support {

class MemoryKeychain final : public platform::Keychain {
 public:
  void store(const std::string& account, std::string bytes) {
    const std::lock_guard lock(mutex_);
    items_[account] = std::move(bytes);
  }
  bool holds(const std::string& account) const {
    const std::lock_guard lock(mutex_);
    return items_.contains(account);
  }
  int reads() const {
    const std::lock_guard lock(mutex_);
    return reads_;
  }
  /// The read, counted from 1, at which memory has run out.
  void runOutOfMemoryAt(int read) {
    const std::lock_guard lock(mutex_);
    failingRead_ = reads_ + read;
  }
  /// Of each query, in the same order.
  std::vector<base::Deadline> deadlines() const {
    const std::lock_guard lock(mutex_);
    return deadlines_;
  }
  std::vector<platform::KeychainQuery> queries() const {
    const std::lock_guard lock(mutex_);
    return queries_;
  }

 private:
  platform::KeychainResult find(const platform::KeychainQuery& query, base::Deadline deadline) override {
    const std::lock_guard lock(mutex_);
    if (++reads_ == failingRead_) throw std::bad_alloc();
    queries_.push_back(query);
    deadlines_.push_back(deadline);
    const auto item = items_.find(accountOf(query));
    if (item == items_.end()) return {platform::KeychainStatus::itemNotFound, std::nullopt};
    return {platform::KeychainStatus::success, item->second};
  }

  platform::KeychainStatus erase(const platform::KeychainQuery& query, base::Deadline deadline) override {
    const std::lock_guard lock(mutex_);
    queries_.push_back(query);
    deadlines_.push_back(deadline);
    return items_.erase(accountOf(query)) > 0 ? platform::KeychainStatus::success
                                              : platform::KeychainStatus::itemNotFound;
  }

  static std::string accountOf(const platform::KeychainQuery& query) {
    for (const auto& [key, value] : query) {
      if (key == platform::KeychainKey::account) return std::get<std::string>(value);
    }
    return {};
  }

  mutable std::mutex mutex_;
  std::map<std::string, std::string> items_;
  std::vector<platform::KeychainQuery> queries_;
  std::vector<base::Deadline> deadlines_;
  int reads_ = 0;
  int failingRead_ = -1;
};

}  // namespace support
