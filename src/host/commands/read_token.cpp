#include "host/commands/read_token.hpp"

#include <array>
#include <cerrno>
#include <cstring>
#include <string>

#include <termios.h>
#include <unistd.h>

#include "base/text/control_characters.hpp"
#include "base/text/utf8.hpp"

namespace host {
namespace {

constexpr std::size_t longestToken = std::size_t{64} << 10;

/// Turns the terminal's echo off for the length of a scope.
class EchoOff {
 public:
  EchoOff() {
    if (tcgetattr(STDIN_FILENO, &before_) != 0) return;
    termios silent = before_;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    changed_ = tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent) == 0;
  }
  ~EchoOff() {
    if (!changed_) return;
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_);
    // The line end that was typed was not echoed either.
    say("\n");
  }
  EchoOff(const EchoOff&) = delete;
  EchoOff& operator=(const EchoOff&) = delete;

  static void say(const char* text) {
    [[maybe_unused]] const ssize_t ignored = ::write(STDERR_FILENO, text, std::strlen(text));
  }

 private:
  termios before_{};
  bool changed_ = false;
};

std::unexpected<CommandFailure> refusal(const char* why) {
  return std::unexpected(CommandFailure{exit_status::wrongCommandLine, why});
}

/// To the first line end of a terminal, else to the end of input.
std::expected<std::string, CommandFailure> readAllOfIt(SignalDescriptor& signals, bool typed) {
  std::string bytes;
  std::array<char, 4096> buffer{};
  while (true) {
    waitForAny({STDIN_FILENO, signals.descriptor()});
    if (signals.take() != 0) return std::unexpected(CommandFailure{exit_status::noAnswer, "interrupted"});
    const ssize_t count = ::read(STDIN_FILENO, buffer.data(), buffer.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (count < 0) return refusal("the token could not be read from standard input");
    bytes.append(buffer.data(), static_cast<std::size_t>(count));
    explicit_bzero(buffer.data(), buffer.size());
    if (count == 0 || (typed && bytes.ends_with('\n'))) return bytes;
    if (bytes.size() > longestToken) return refusal("that is too long for a device token");
  }
}

}  // namespace

std::expected<base::SecretText, CommandFailure> readToken(SignalDescriptor& signals) {
  const bool typed = isatty(STDIN_FILENO) == 1;
  auto token = [&] {
    if (!typed) return readAllOfIt(signals, typed);
    const EchoOff silent;
    EchoOff::say("Device token (it is not shown): ");
    return readAllOfIt(signals, typed);
  }();
  if (!token) return std::unexpected(token.error());
  if (token->ends_with('\n')) token->pop_back();
  if (token->ends_with('\r')) token->pop_back();
  if (token->empty()) return refusal("the token is empty");
  if (!base::isUtf8(*token) || base::holdsControl(*token)) {
    return refusal("the token holds a line end or another character that no token has");
  }
  base::SecretText secret(*token);
  explicit_bzero(token->data(), token->size());
  return secret;
}

}  // namespace host
