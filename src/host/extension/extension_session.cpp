#include "host/extension/extension_session.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>
#include <optional>
#include <utility>

#include <poll.h>
#include <unistd.h>

#include "base/json/json_text.hpp"
#include "host/extension/printable.hpp"
#include "protocol/json_rpc/message.hpp"

namespace host {
namespace {

using Kind = ExtensionFailure::Kind;
using nlohmann::json;
using protocol::json_rpc::LineReader;
using std::chrono::steady_clock;

// A few answers with an unknown id are passed over. More of them mean that the extension is broken.
constexpr int mostUnknownIds = 3;
// The protocol has no notifications yet. A host passes over what it does not know, but not without end.
constexpr int mostNotifications = 1000;
// A process that ends closes its streams a moment before its descriptor reports the end.
constexpr auto timeToEnd = std::chrono::milliseconds(100);

int milliseconds(steady_clock::duration span) {
  const auto rounded = std::chrono::ceil<std::chrono::milliseconds>(span).count();
  return static_cast<int>(std::clamp<std::int64_t>(rounded, 0, std::numeric_limits<int>::max()));
}

std::string quoted(std::string_view line) {
  constexpr std::size_t most = 60;
  const std::string shown = printable(line.substr(0, most));
  // The cut may fall within a character, so only ASCII is quoted.
  const bool plain = std::ranges::all_of(shown, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  return plain && !shown.empty() ? ": " + shown : "";
}

ExtensionFailure nonsense(std::string message) { return {.kind = Kind::nonsense, .message = std::move(message)}; }

}  // namespace

ExtensionSession::ExtensionSession(ExtensionProcess process, int interruption, int diagnostics)
    : process_(std::move(process)),
      reader_(process_.output(), longestAnswer),
      relay_(diagnostics),
      interruption_(interruption) {}

ExtensionSession::Answer ExtensionSession::ask(const std::string& method, const std::string& params,
                                               TimePoint deadline) {
  const std::string text = protocol::json_rpc::requestLine(++lastId_, method, params) + "\n";
  if (text.size() > protocol::json_rpc::maximumLineLength) {
    return std::unexpected(ExtensionFailure{Kind::refused, "the request is longer than an extension reads"});
  }
  std::string_view rest = text;
  while (true) {
    if (auto written = writeSome(rest); !written) return std::unexpected(written.error());
    const Wake wake = wait(deadline, !rest.empty());
    if (wake == Wake::interrupted) return std::unexpected(ExtensionFailure{Kind::interrupted, "interrupted"});
    // Checked before reading: what the process wrote before its end can still be read after it.
    const bool ended = process_.ended();
    pumpDiagnostics();
    if (auto answer = readAnswer(method, deadline)) {
      if (rest.empty() || (!*answer && answer->error().kind != Kind::refused)) return std::move(*answer);
      return std::unexpected(nonsense("the extension answered before it had read the question"));
    }
    if (ended) return std::unexpected(died(""));
    if (wake == Wake::deadline) return std::unexpected(timedOut(method));
  }
}

ExtensionSession::Wake ExtensionSession::wait(TimePoint deadline, bool wantsToWrite) {
  std::array<pollfd, 5> entries{
      pollfd{.fd = interruption_, .events = POLLIN, .revents = 0},
      pollfd{.fd = process_.identity(), .events = POLLIN, .revents = 0},
      pollfd{.fd = process_.output(), .events = POLLIN, .revents = 0},
      pollfd{.fd = diagnosticsOpen_ ? process_.diagnostics() : -1, .events = POLLIN, .revents = 0},
      pollfd{.fd = wantsToWrite ? process_.input() : -1, .events = POLLOUT, .revents = 0},
  };
  const auto left = deadline - steady_clock::now();
  const int count = ::poll(entries.data(), entries.size(), milliseconds(left));
  if (count > 0 && entries[0].revents != 0) return Wake::interrupted;
  // By the clock and not by poll's count: a process that writes all the time must not outlast the deadline.
  return steady_clock::now() >= deadline ? Wake::deadline : Wake::ready;
}

std::expected<void, ExtensionFailure> ExtensionSession::writeSome(std::string_view& rest) {
  while (!rest.empty()) {
    const ssize_t count = ::write(process_.input(), rest.data(), rest.size());
    if (count >= 0) {
      rest.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
      return {};
    } else if (errno != EINTR) {
      return std::unexpected(died("input"));
    }
  }
  return {};
}

std::optional<ExtensionSession::Answer> ExtensionSession::readAnswer(const std::string& method, TimePoint deadline) {
  using Status = LineReader::Status;
  while (true) {
    const auto read = reader_.next();
    if (read.status == Status::wouldBlock) return std::nullopt;
    if (read.status == Status::tooLong) {
      return std::unexpected(ExtensionFailure{Kind::tooLong, "the extension wrote a line that is longer than 16 MiB"});
    }
    if (read.status != Status::line) return std::unexpected(died("output"));

    auto response = protocol::json_rpc::parseResponse(read.text);
    if (!response && response.error() == base::tooManyValues) {
      return std::unexpected(ExtensionFailure{Kind::tooLong, "the extension wrote a line of more than 750,000 values"});
    }
    // An error without an id means that the extension could not read a line, and only one request is under way.
    const bool isOurs = response && (response->id == lastId_ || (response->id.is_null() && !response->outcome));
    if (isOurs) {
      notifications_ = 0;
      if (response->outcome) return std::move(*response->outcome);
      return std::unexpected(ExtensionFailure{
          Kind::refused, "the extension refused \"" + method + "\": " + printable(response->outcome.error().message)});
    }
    if (response && ++unknownIds_ > mostUnknownIds) {
      return std::unexpected(nonsense("the extension answers what it was not asked"));
    }
    if (!response) {
      if (auto judged = judgeStray(read.text); !judged) return std::unexpected(judged.error());
    }
    if (steady_clock::now() >= deadline) return std::unexpected(timedOut(method));
  }
}

std::expected<void, ExtensionFailure> ExtensionSession::judgeStray(std::string_view line) {
  const auto notification = protocol::json_rpc::parseRequest(line);
  if (!notification || !notification->isNotification) {
    return std::unexpected(nonsense("the extension wrote a line that is not an answer" + quoted(line)));
  }
  if (++notifications_ > mostNotifications) {
    return std::unexpected(nonsense("the extension sends notifications without end"));
  }
  return {};
}

ExtensionFailure ExtensionSession::died(const std::string& closedStream) {
  pollfd entry{.fd = process_.identity(), .events = POLLIN, .revents = 0};
  const bool ended = ::poll(&entry, 1, milliseconds(timeToEnd)) == 1;
  pumpDiagnostics();
  const std::string how = process_.end();
  return {.kind = Kind::died,
          .message = "the extension " + (ended ? how : "closed its " + closedStream) + " before it answered"};
}

ExtensionFailure ExtensionSession::timedOut(const std::string& method) const {
  return {.kind = Kind::timedOut, .message = "the extension did not answer \"" + method + "\" in time"};
}

void ExtensionSession::end(TimePoint deadline) {
  process_.closeInput();
  bool outputOpen = true;
  std::array<char, 4096> dropped;
  while (!process_.ended()) {
    std::array<pollfd, 3> entries{
        pollfd{.fd = process_.identity(), .events = POLLIN, .revents = 0},
        pollfd{.fd = outputOpen ? process_.output() : -1, .events = POLLIN, .revents = 0},
        pollfd{.fd = diagnosticsOpen_ ? process_.diagnostics() : -1, .events = POLLIN, .revents = 0},
    };
    const auto left = deadline - steady_clock::now();
    if (left <= steady_clock::duration::zero()) break;
    ::poll(entries.data(), entries.size(), milliseconds(left));
    pumpDiagnostics();
    // Read and dropped: a full pipe would keep the extension from ending.
    if (entries[1].revents != 0) outputOpen = ::read(process_.output(), dropped.data(), dropped.size()) != 0;
  }
  pumpDiagnostics();
  process_.end();
}

void ExtensionSession::pumpDiagnostics() {
  if (diagnosticsOpen_) diagnosticsOpen_ = relay_.pump(process_.diagnostics());
}

}  // namespace host
