// A Secret Service that misbehaves as told, on a real bus. It answers from a thread of its own and notes each call.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <systemd/sd-bus.h>

#include "base/descriptors/file_descriptor.hpp"
#include "support/session_bus.hpp"

namespace platform::testing {

struct FakeItem {
  std::string bytes;
  std::uint64_t modified = 1;
  bool locked = false;
};

/// Calls are named by their member; reading a property by the property's name ("Collections").
struct FakeBehaviour {
  std::map<std::string, FakeItem> items;  // by their last path component; every search finds them all
  bool collectionLocked = false;
  bool deletePrompts = false;
  std::set<std::string> silent;               // never answered
  std::set<std::string> wrongSignature;       // answered with a lone integer
  std::map<std::string, std::string> errors;  // answered with this error, each time
  std::map<std::string, int> unknownMethod;   // answered with UnknownMethod so many times
};

class FakeSecretService {
 public:
  /// Owns the service's name on the bus when this returns.
  FakeSecretService(const std::string& busAddress, FakeBehaviour behaviour);
  FakeSecretService(const FakeSecretService&) = delete;
  FakeSecretService& operator=(const FakeSecretService&) = delete;
  ~FakeSecretService();

  std::vector<std::string> calls();
  bool holds(const std::string& item);

 private:
  static int dispatch(sd_bus_message* call, void* self, sd_bus_error* error);
  int answer(sd_bus_message* call);
  int answerProperty(sd_bus_message* call, const std::string& item, const std::string& name);
  void serve();

  FakeBehaviour behaviour_;
  std::mutex mutex_;
  std::vector<std::string> calls_;
  support::BusConnection bus_;
  base::FileDescriptor stop_;
  std::thread thread_;
};

}  // namespace platform::testing
