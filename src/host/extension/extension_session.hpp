// A running extension and the requests to it, one at a time. Judges lines, ids, deadlines and the process's end; what a
// result means is answers.hpp's, starting again is extension_client.hpp's.
#pragma once

#include <chrono>
#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "host/extension/diagnostics_relay.hpp"
#include "host/extension/extension_failure.hpp"
#include "host/extension/extension_process.hpp"
#include "protocol/json_rpc/line_reader.hpp"

namespace host {

/// The longest line that a host reads, in bytes without the line end: a day of real size has some thousands.
inline constexpr std::size_t longestAnswer = std::size_t{16} << 20;

class ExtensionSession {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;

  /// `interruption` and `diagnostics` are descriptors or -1, as in ExtensionSettings.
  ExtensionSession(ExtensionProcess process, int interruption, int diagnostics);
  ExtensionSession(const ExtensionSession&) = delete;
  ExtensionSession& operator=(const ExtensionSession&) = delete;

  /// The result of a method; `params` is JSON, empty for none. After any failure but `refused`, only `end` may be
  /// called.
  std::expected<nlohmann::json, ExtensionFailure> ask(const std::string& method, const std::string& params,
                                                      TimePoint deadline);

  bool ended() const { return process_.ended(); }

  /// Closes the extension's input, waits until `deadline` for it to leave, and kills what is left.
  void end(TimePoint deadline);

 private:
  using Answer = std::expected<nlohmann::json, ExtensionFailure>;
  enum class Wake { ready, deadline, interrupted };

  Wake wait(TimePoint deadline, bool wantsToWrite);
  std::expected<void, ExtensionFailure> writeSome(std::string_view& rest);
  /// The answer to request `lastId_`, or nothing while it is not there.
  std::optional<Answer> readAnswer(const std::string& method, TimePoint deadline);
  std::expected<void, ExtensionFailure> judgeStray(std::string_view line);
  ExtensionFailure died(const std::string& closedStream);
  ExtensionFailure timedOut(const std::string& method) const;
  void pumpDiagnostics();

  ExtensionProcess process_;
  protocol::json_rpc::LineReader reader_;
  DiagnosticsRelay relay_;
  int interruption_;
  bool diagnosticsOpen_ = true;
  std::int64_t lastId_ = 0;
  int unknownIds_ = 0;
  int notifications_ = 0;  // since the last answer
};

}  // namespace host
