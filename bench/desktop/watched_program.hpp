// A program on a desktop under measure: started, its lines told with their times, weighed, and ended.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

#include "base/descriptors/file_descriptor.hpp"

namespace bench {

using Clock = std::chrono::steady_clock;

/// What a process has used up so far.
struct Use {
  std::map<std::string, std::uint64_t> wakeUps;  ///< by thread: times that it went to sleep or was set aside
  double cpuMs = 0;                              ///< of all threads, ended ones too
};

/// Between two moments of one process. A thread that ended between them counts as one wake-up.
std::uint64_t wakeUpsBetween(const Use& before, const Use& after);

class WatchedProgram {
 public:
  /// Both of its output streams are read. Throws std::runtime_error.
  WatchedProgram(const std::vector<std::string>& words, const std::vector<std::string>& environment);
  /// By SIGTERM, then SIGKILL.
  ~WatchedProgram();
  WatchedProgram(const WatchedProgram&) = delete;
  WatchedProgram& operator=(const WatchedProgram&) = delete;

  Clock::time_point started() const { return started_; }
  pid_t id() const { return process_; }
  /// When a line that holds `text` came, counted from what was read before. Throws where it does not come in 20 s.
  Clock::time_point lineWith(const std::string& text);
  /// Returns when it is 20 s old and has done nothing for a second and a half. GLib ends threads that have nothing to
  /// do after 15 s, and the toolkit's accessibility looks once after 16 s whether somebody listens: both are the
  /// start's.
  void settle() const;

  Use use() const;
  /// Of its memory, with shared pages by their share.
  double pssMb() const;
  std::size_t children() const;

 private:
  Clock::time_point started_;
  pid_t process_ = -1;
  base::FileDescriptor output_;
  std::string unread_;
};

}  // namespace bench
