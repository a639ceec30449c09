#include "watched_program.hpp"

#include <csignal>
#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/file_content.hpp"

namespace bench {
namespace {

using std::chrono::milliseconds;
using support::contentOf;

std::vector<char*> pointers(const std::vector<std::string>& texts) {
  std::vector<char*> all;
  for (const auto& text : texts) all.push_back(const_cast<char*>(text.c_str()));
  all.push_back(nullptr);
  return all;
}

/// The number after `name` in a file of lines "name: number".
std::uint64_t numberAfter(const std::string& text, const std::string& name) {
  const auto at = text.find("\n" + name);
  return at == std::string::npos ? 0 : std::stoull(text.substr(text.find_first_of("0123456789", at)));
}

}  // namespace

std::uint64_t wakeUpsBetween(const Use& before, const Use& after) {
  std::uint64_t count = 0;
  for (const auto& [thread, wakeUps] : after.wakeUps) {
    const auto earlier = before.wakeUps.find(thread);
    count += earlier == before.wakeUps.end() ? wakeUps : wakeUps - earlier->second;
  }
  for (const auto& [thread, wakeUps] : before.wakeUps) count += after.wakeUps.contains(thread) ? 0U : 1U;
  return count;
}

WatchedProgram::WatchedProgram(const std::vector<std::string>& words, const std::vector<std::string>& environment) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  output_.reset(ends[0]);
  const base::FileDescriptor writing(ends[1]);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, writing.get(), STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, writing.get(), STDERR_FILENO);
  started_ = Clock::now();
  const int error = posix_spawnp(&process_, words[0].c_str(), &actions, nullptr, pointers(words).data(),
                                 pointers(environment).data());
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw std::runtime_error(words[0] + " can't be started");
}

WatchedProgram::~WatchedProgram() {
  kill(process_, SIGTERM);
  for (int i = 0; i < 200; ++i) {
    if (waitpid(process_, nullptr, WNOHANG) == process_) return;
    std::this_thread::sleep_for(milliseconds(10));
  }
  kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
}

Clock::time_point WatchedProgram::lineWith(const std::string& text) {
  const auto end = Clock::now() + std::chrono::seconds(20);
  while (Clock::now() < end) {
    if (const auto at = unread_.find(text); at != std::string::npos) {
      unread_.erase(0, at + text.size());
      return Clock::now();
    }
    pollfd readable{.fd = output_.get(), .events = POLLIN, .revents = 0};
    poll(&readable, 1, 1000);
    char buffer[4096];
    if (readable.revents == 0) continue;
    const auto count = read(output_.get(), buffer, sizeof buffer);
    if (count <= 0) break;
    unread_.append(buffer, static_cast<std::size_t>(count));
  }
  throw std::runtime_error("waited in vain for '" + text + "'; it said: " + unread_);
}

void WatchedProgram::settle() const {
  std::this_thread::sleep_until(started_ + std::chrono::seconds(20));
  auto last = use();
  for (int quiet = 0; quiet < 3;) {
    std::this_thread::sleep_for(milliseconds(500));
    const auto now = use();
    quiet = wakeUpsBetween(last, now) == 0 ? quiet + 1 : 0;
    last = now;
    // What never rests is measured as it is.
    if (Clock::now() - started_ > std::chrono::seconds(25)) return;
  }
}

Use WatchedProgram::use() const {
  Use use;
  const double msATick = 1000.0 / static_cast<double>(sysconf(_SC_CLK_TCK));
  for (const auto& thread : std::filesystem::directory_iterator("/proc/" + std::to_string(process_) + "/task")) {
    const std::string status = contentOf(thread.path() / "status");
    use.wakeUps[thread.path().filename()] =
        numberAfter(status, "voluntary_ctxt_switches") + numberAfter(status, "nonvoluntary_ctxt_switches");
  }
  // The fields after the name, which ends with the last parenthesis (proc(5)).
  const std::string stat = contentOf("/proc/" + std::to_string(process_) + "/stat");
  std::istringstream fields(stat.substr(stat.rfind(')') + 2));
  std::string skipped;
  for (int i = 0; i < 11; ++i) fields >> skipped;
  double user = 0;
  double system = 0;
  fields >> user >> system;
  use.cpuMs = (user + system) * msATick;
  return use;
}

double WatchedProgram::pssMb() const {
  return static_cast<double>(numberAfter(contentOf("/proc/" + std::to_string(process_) + "/smaps_rollup"), "Pss:")) /
         1024;
}

std::size_t WatchedProgram::children() const {
  std::size_t count = 0;
  for (const auto& thread : std::filesystem::directory_iterator("/proc/" + std::to_string(process_) + "/task")) {
    std::istringstream ids(contentOf(thread.path() / "children"));
    for (std::string id; ids >> id;) ++count;
  }
  return count;
}

}  // namespace bench
