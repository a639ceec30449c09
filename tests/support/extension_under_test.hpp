// An extension process as any host meets it: started with an environment of the test's making, asked by lines, read by
// lines. It knows the protocol's framing and nothing of how the process is built.
#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>
#include <sys/types.h>

#include "base/descriptors/file_descriptor.hpp"
#include "support/temporary_folder.hpp"
#include "support/waiting.hpp"

namespace support {

class ExtensionUnderTest {
 public:
  using Environment = std::map<std::string, std::string>;
  using Duration = std::chrono::steady_clock::duration;

  /// Starts `program` with this environment alone, beside the sanitizers' own options. Throws std::runtime_error where
  /// it cannot be started.
  ExtensionUnderTest(const std::string& program, const Environment& environment);
  ExtensionUnderTest(const ExtensionUnderTest&) = delete;
  ExtensionUnderTest& operator=(const ExtensionUnderTest&) = delete;
  ~ExtensionUnderTest();

  /// Writes the bytes as they are, reading answers meanwhile. False when the process takes no more input.
  bool write(std::string_view bytes);
  bool writeLine(std::string_view line) { return write(std::string(line) + "\n"); }
  void closeInput() { input_.reset(); }
  void kill();
  pid_t id() const { return process_; }

  /// The next line of its output, as written; absent at the output's end and when the time is over.
  std::optional<std::string> line(Duration patience = longPatience);
  /// The next answer; null, a failure in every comparison, where `line` has none or it is not JSON.
  nlohmann::json answer(Duration patience = longPatience);

  /// Sends a request; `answerTo` fetches its answer. Ids count from 1.
  int ask(const std::string& method, const nlohmann::json& params = nullptr);
  /// The answer with this id; those that come before it are kept for their own callers.
  nlohmann::json answerTo(int id, Duration patience = longPatience);
  /// Both in one: the whole answer.
  nlohmann::json call(const std::string& method, const nlohmann::json& params = nullptr);

  /// The exit status, 128 and the signal's number for a signal; absent when it still runs then.
  std::optional<int> exitStatus(Duration patience = longPatience);

  /// What it has written to its standard error so far.
  std::string diagnostics() const;

 private:
  bool readSome(int timeoutMilliseconds);

  TemporaryFolder folder_;
  pid_t process_ = -1;
  base::FileDescriptor input_;
  base::FileDescriptor output_;
  base::FileDescriptor processDescriptor_;
  std::optional<int> status_;
  std::string unread_;  // bytes of its output that are not handed out yet
  bool outputEnded_ = false;
  std::map<int, nlohmann::json> kept_;
  int lastId_ = 0;
};

}  // namespace support
