// Environment variables for the length of a scope, put back as they were at its end.
#pragma once

#include <cstdlib>
#include <map>
#include <optional>
#include <string>

namespace support {

class ScopedEnvironment {
 public:
  ScopedEnvironment() = default;
  ScopedEnvironment(const ScopedEnvironment&) = delete;
  ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

  ~ScopedEnvironment() {
    for (const auto& [name, value] : before_) {
      if (value) {
        setenv(name.c_str(), value->c_str(), 1);
      } else {
        unsetenv(name.c_str());
      }
    }
  }

  void set(const std::string& name, const std::string& value) {
    remember(name);
    setenv(name.c_str(), value.c_str(), 1);
  }

  void unset(const std::string& name) {
    remember(name);
    unsetenv(name.c_str());
  }

 private:
  void remember(const std::string& name) {
    const char* value = std::getenv(name.c_str());
    before_.try_emplace(name, value == nullptr ? std::nullopt : std::optional<std::string>(value));
  }

  std::map<std::string, std::optional<std::string>> before_;
};

}  // namespace support
