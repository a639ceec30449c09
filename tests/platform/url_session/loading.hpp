// Short functions that the session's tests share.
#pragma once

#include <chrono>
#include <expected>
#include <ostream>
#include <stop_token>
#include <string>

#include <gtest/gtest.h>

#include "platform/url_session/url_session.hpp"

namespace platform {

inline void PrintTo(TransportError::Kind kind, std::ostream* out) { *out << "kind " << static_cast<int>(kind); }

inline UrlRequest requestFor(const std::string& text) { return UrlRequest{.url = Url::parse(text).value()}; }

/// The limits of the session in tests that are about something else: long enough never to matter.
inline UrlSessionConfiguration patientConfiguration() {
  UrlSessionConfiguration configuration;
  configuration.timeoutIntervalForRequest = absl::Seconds(60);
  configuration.timeoutIntervalForResource = absl::Seconds(60);
  return configuration;
}

using Loaded = std::expected<DataAndResponse, TransportError>;

/// Why a load failed; a load that did not fail is a failure of the test.
inline TransportError errorOf(const Loaded& loaded) {
  if (!loaded) return loaded.error();
  ADD_FAILURE() << "loaded " << loaded->data.size() << " bytes with status "
                << loaded->response.statusCode.value_or(-1);
  return {};
}

/// The body, behind the status: "200 text"; "none text" without a status; the error's text for a failure.
inline std::string summary(const Loaded& loaded) {
  if (!loaded) return "failed: " + loaded.error().description;
  const auto status = loaded->response.statusCode;
  return (status ? std::to_string(*status) : "none") + " " + loaded->data;
}

class Stopwatch {
 public:
  std::chrono::milliseconds elapsed() const {
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begin_);
  }

 private:
  std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

}  // namespace platform
