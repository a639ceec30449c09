// `vamba-host` as a person or a script starts it, with the fake extension behind it.
#pragma once

#include <csignal>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "base/descriptors/file_descriptor.hpp"
#include "support/environment.hpp"
#include "support/file_content.hpp"
#include "support/temporary_folder.hpp"
#include "support/waiting.hpp"

namespace host {

/// All three streams on one terminal.
struct OnTerminal {};

/// Where its standard output goes.
enum class Onto { pipe, terminal };

class HostProcess {
 public:
  HostProcess(std::vector<std::string> arguments, Onto onto = Onto::pipe, const std::string& input = "",
              const std::string& program = VAMBA_FAKE_EXTENSION) {
    folder_.write("input", input);
    const base::FileDescriptor file(open(folder_.path("input").c_str(), O_RDONLY | O_CLOEXEC));
    start(std::move(arguments), onto, file.get(), program);
  }
  /// With a standard input of the test's own.
  HostProcess(std::vector<std::string> arguments, int input) {
    start(std::move(arguments), Onto::pipe, input, VAMBA_FAKE_EXTENSION);
  }

  HostProcess(std::vector<std::string> arguments, OnTerminal /*all*/, const std::string& program) {
    start(std::move(arguments), Onto::terminal, -1, program);
  }

  HostProcess(const HostProcess&) = delete;
  HostProcess& operator=(const HostProcess&) = delete;

  ~HostProcess() {
    if (process_ > 0) {
      kill(process_, SIGKILL);
      status();
    }
    close(output_);
  }

  void signal(int number) { kill(process_, number); }

  /// As when a status bar ends.
  void closeOutput() { close(std::exchange(output_, -1)); }

  /// Whether its output comes to fill the pipe while nothing of it is read.
  bool isFull() const {
    return support::eventually([this] {
      int waiting = 0;
      return ioctl(output_, FIONREAD, &waiting) == 0 && waiting == fcntl(output_, F_GETPIPE_SZ);
    });
  }

  void type(const std::string& text) {
    EXPECT_EQ(write(output_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }

  void resize(unsigned short columns) {
    winsize size{.ws_row = 40, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
    ioctl(output_, TIOCSWINSZ, &size);
    signal(SIGWINCH);
  }

  /// Its output up to and with `text`; fails the test where the text never comes.
  std::string readUntil(const std::string& text) {
    while (pending_.find(text) == std::string::npos) {
      if (!readMore()) {
        ADD_FAILURE() << "no \"" << text << "\" in the output: " << pending_ << errors();
        return std::exchange(pending_, "");
      }
    }
    const auto end = pending_.find(text) + text.size();
    std::string read = pending_.substr(0, end);
    pending_.erase(0, end);
    return read;
  }
  std::string line() { return readUntil("\n"); }

  /// All the rest of its output.
  std::string rest() {
    while (readMore()) {
    }
    return std::exchange(pending_, "");
  }

  /// Its exit status; 128 and the signal's number for a signal.
  int status() {
    int status = 0;
    waitpid(std::exchange(process_, -1), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }

  std::string errors() const { return support::contentOf(folder_.path("errors")); }

 private:
  void start(std::vector<std::string> arguments, Onto onto, int input, const std::string& program) {
    int output[2] = {-1, -1};
    if (onto == Onto::terminal) {
      winsize size{.ws_row = 40, .ws_col = 50, .ws_xpixel = 0, .ws_ypixel = 0};
      EXPECT_EQ(openpty(&output[0], &output[1], nullptr, nullptr, &size), 0);
    } else {
      EXPECT_EQ(pipe2(output, O_CLOEXEC), 0);
    }
    arguments.insert(arguments.begin(), {VAMBA_HOST, "--extension", program});
    const pid_t parent = getpid();
    process_ = fork();
    if (process_ == 0) {
      // A killed test leaves nothing behind.
      prctl(PR_SET_PDEATHSIG, SIGKILL);
      if (getppid() != parent) _exit(127);
      dup2(input < 0 ? output[1] : input, STDIN_FILENO);
      dup2(output[1], STDOUT_FILENO);
      dup2(input < 0 ? output[1] : open(folder_.path("errors").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600),
           STDERR_FILENO);
      close(output[0]);
      std::vector<char*> argv;
      for (auto& argument : arguments) argv.push_back(argument.data());
      argv.push_back(nullptr);
      execv(VAMBA_HOST, argv.data());
      _exit(127);
    }
    close(output[1]);
    output_ = output[0];
  }

  bool readMore() {
    pollfd polled{.fd = output_, .events = POLLIN, .revents = 0};
    constexpr int longest = 60'000;
    if (poll(&polled, 1, longest) != 1) return false;
    char buffer[4096];
    const auto count = read(output_, buffer, sizeof buffer);
    if (count <= 0) return false;
    pending_.append(buffer, static_cast<std::size_t>(count));
    return true;
  }

  support::TemporaryFolder folder_;
  pid_t process_ = -1;
  int output_ = -1;
  std::string pending_;
};

/// What `vamba-host` printed, said and returned.
struct Outcome {
  int status;
  std::string output;
  std::string errors;
};

inline Outcome runHost(std::vector<std::string> arguments, const std::string& input = "",
                       const std::string& program = VAMBA_FAKE_EXTENSION) {
  HostProcess host(std::move(arguments), Onto::pipe, input, program);
  std::string output = host.rest();
  const int status = host.status();
  return {status, std::move(output), host.errors()};
}

}  // namespace host
