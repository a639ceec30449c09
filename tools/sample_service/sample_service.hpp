// The sample service's HTTP side: the three resources on loopback behind a bearer token, and faults on request.
//
// What the answers hold is sample_day.hpp's; the command line and the process are main.cpp's.
#pragma once

#include <expected>
#include <memory>
#include <string>

#include "sample_day.hpp"

namespace sample {

enum class Fault {
  None,
  Slow,          // every answer comes after 5 seconds
  Unauthorized,  // every answer is 401, as to a token that has been revoked
  ServerError,   // every answer is 500
  Malformed,     // every answer is 200 with JSON that breaks off
};

struct Settings {
  int port = 0;  // 0: a free one
  std::string token;
  Day day = Day::Full;
  Language language = Language::Polish;
  Fault fault = Fault::None;
};

class Service {
 public:
  // Listens on 127.0.0.1 once this returns. Fails with a sentence when the port cannot be had.
  static std::expected<std::unique_ptr<Service>, std::string> start(Settings settings);

  // Ends the answers under way and waits for the service's threads, a second at most for idle connections.
  virtual ~Service() = default;

  // The base address, ending in /api.
  virtual std::string address() const = 0;
};

}  // namespace sample
