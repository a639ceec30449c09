#include "support/scripted_http_server.hpp"

#include <algorithm>
#include <array>
#include <cerrno>

#include <poll.h>
#include <strings.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include "support/waiting.hpp"

namespace support {

Event::Event() : descriptor_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

void Event::set() { eventfd_write(descriptor_.get(), 1); }

std::string HttpAnswer::bytes() const {
  std::string text = "HTTP/1.1 " + std::to_string(status) + " Scripted\r\n";
  bool framed = status < 200 || status == 204 || status == 304;
  for (const auto& [name, value] : headers) {
    text += name + ": " + value + "\r\n";
    framed =
        framed || strcasecmp(name.c_str(), "Content-Length") == 0 || strcasecmp(name.c_str(), "Transfer-Encoding") == 0;
  }
  if (!framed) text += "Content-Length: " + std::to_string(body.size()) + "\r\n";
  return text + "\r\n" + body;
}

std::optional<std::string> RecordedRequest::header(std::string_view name) const {
  for (std::size_t at = raw.find("\r\n"); at != std::string::npos; at = raw.find("\r\n", at + 2)) {
    const std::size_t begin = at + 2;
    if (raw.size() <= begin + name.size() || raw[begin + name.size()] != ':') continue;
    if (strncasecmp(raw.data() + begin, name.data(), name.size()) != 0) continue;
    std::string value = raw.substr(begin + name.size() + 1, raw.find("\r\n", begin) - begin - name.size() - 1);
    value.erase(0, value.find_first_not_of(' '));
    return value.erase(value.find_last_not_of(' ') + 1);
  }
  return std::nullopt;
}

ScriptedHttpServer::ScriptedHttpServer()
    : listener_(LoopbackListener::open(SOMAXCONN)), acceptor_(&ScriptedHttpServer::acceptConnections, this) {}

ScriptedHttpServer::~ScriptedHttpServer() {
  ending_.set();
  acceptor_.join();
  for (std::thread& each : connections_) each.join();
}

std::string ScriptedHttpServer::url(std::string_view path) const {
  return "http://127.0.0.1:" + std::to_string(port()) + std::string(path);
}

void ScriptedHttpServer::script(const std::string& target, std::vector<Step> steps) {
  const std::lock_guard lock(mutex_);
  scripts_.insert_or_assign(target, std::move(steps));
}

void ScriptedHttpServer::onAccept(std::vector<Step> steps) {
  const std::lock_guard lock(mutex_);
  acceptScript_ = std::move(steps);
}

std::vector<RecordedRequest> ScriptedHttpServer::requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

std::size_t ScriptedHttpServer::connectionCount() const {
  const std::lock_guard lock(mutex_);
  return received_.size();
}

std::string ScriptedHttpServer::received(std::size_t connection) const {
  const std::lock_guard lock(mutex_);
  return received_.at(connection);
}

bool ScriptedHttpServer::waitForRequests(std::size_t count) const {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, longPatience, [&] { return requests_.size() >= count; });
}

bool ScriptedHttpServer::waitForConnections(std::size_t count) const {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, longPatience, [&] { return received_.size() >= count; });
}

bool ScriptedHttpServer::waitForHangUps(std::size_t count) const {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, longPatience, [&] { return hangUps_ >= count; });
}

void ScriptedHttpServer::acceptConnections() {
  while (waitFor(listener_.socket.get(), -1) == Waited::ready) {
    const int socket = accept4(listener_.socket.get(), nullptr, nullptr, SOCK_CLOEXEC);
    if (socket < 0) continue;
    std::size_t connection = 0;
    {
      const std::lock_guard lock(mutex_);
      connection = received_.size();
      received_.emplace_back();
      changed_.notify_all();
    }
    connections_.emplace_back(&ScriptedHttpServer::serve, this, connection, socket);
  }
}

void ScriptedHttpServer::serve(std::size_t connection, int socket) {
  const base::FileDescriptor owner(socket);
  std::vector<Step> first;
  {
    const std::lock_guard lock(mutex_);
    first = acceptScript_;
  }
  std::string pending;
  bool open = run(first, socket);
  while (open) {
    const auto request = readRequest(connection, socket, pending);
    open = request && run(takeUp(*request), socket);
  }
}

std::optional<RecordedRequest> ScriptedHttpServer::readRequest(std::size_t connection, int socket,
                                                               std::string& pending) {
  constexpr std::string_view blankLine = "\r\n\r\n";
  std::size_t end = pending.find(blankLine);
  while (end == std::string::npos) {
    if (waitFor(socket, -1) != Waited::ready) return std::nullopt;
    std::array<char, 4096> buffer;
    const ssize_t count = recv(socket, buffer.data(), buffer.size(), 0);
    const std::lock_guard lock(mutex_);
    if (count <= 0) {
      ++hangUps_;
      changed_.notify_all();
      return std::nullopt;
    }
    pending.append(buffer.data(), static_cast<std::size_t>(count));
    received_[connection].append(buffer.data(), static_cast<std::size_t>(count));
    end = pending.find(blankLine);
  }
  RecordedRequest request{connection, {}, pending.substr(0, end + blankLine.size())};
  pending.erase(0, request.raw.size());
  const std::size_t begin = request.raw.find(' ') + 1;
  request.target = request.raw.substr(begin, request.raw.find(' ', begin) - begin);
  return request;
}

std::vector<Step> ScriptedHttpServer::takeUp(const RecordedRequest& request) {
  const std::lock_guard lock(mutex_);
  requests_.push_back(request);
  changed_.notify_all();
  for (const std::string& each : {request.target, std::string("*")}) {
    if (const auto found = scripts_.find(each); found != scripts_.end()) return found->second;
  }
  return {Send{HttpAnswer{404, "no script for this target"}.bytes()}};
}

// False when the connection is over.
bool ScriptedHttpServer::run(const std::vector<Step>& steps, int socket) {
  return std::all_of(steps.begin(), steps.end(), [&](const Step& step) { return perform(step, socket); });
}

bool ScriptedHttpServer::perform(const Step& step, int socket) {
  Waited waited = Waited::ready;
  if (const auto* const sending = std::get_if<Send>(&step)) {
    return sendAll(socket, sending->bytes);
  }
  if (const auto* const dripping = std::get_if<Drip>(&step)) {
    for (const char& byte : dripping->bytes) {
      if (!sendAll(socket, {&byte, 1})) return false;
      waited = waitFor(-1, socket, static_cast<int>(dripping->pause.count()));
      if (waited != Waited::ready) break;
    }
  } else if (const auto* const awaiting = std::get_if<Await>(&step)) {
    waited = waitFor(awaiting->event->descriptor(), socket);
  } else if (std::holds_alternative<Stall>(step)) {
    waited = waitFor(-1, socket);
  } else if (std::holds_alternative<Reset>(step)) {
    const linger atOnce{.l_onoff = 1, .l_linger = 0};
    setsockopt(socket, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    return false;
  } else {
    return false;
  }
  if (waited == Waited::clientLeft) {
    const std::lock_guard lock(mutex_);
    ++hangUps_;
    changed_.notify_all();
  }
  return waited == Waited::ready;
}

// False when the client or the server ended before everything was sent.
bool ScriptedHttpServer::sendAll(int socket, std::string_view bytes) const {
  while (!bytes.empty()) {
    std::array<pollfd, 2> polled{{{ending_.descriptor(), POLLIN, 0}, {socket, POLLOUT, 0}}};
    if (poll(polled.data(), polled.size(), -1) < 0) continue;
    if (polled[0].revents != 0) return false;
    const ssize_t sent = send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (sent > 0) bytes.remove_prefix(static_cast<std::size_t>(sent));
    if (sent < 0 && errno != EINTR && errno != EAGAIN) return false;
  }
  return true;
}

// Until the descriptor can be read (-1: none) or the time is over, unless the client or the server ends before.
ScriptedHttpServer::Waited ScriptedHttpServer::waitFor(int descriptor, int socket, int milliseconds) const {
  std::array<pollfd, 3> polled{{{ending_.descriptor(), POLLIN, 0}, {socket, POLLRDHUP, 0}, {descriptor, POLLIN, 0}}};
  while (poll(polled.data(), polled.size(), milliseconds) < 0 && errno == EINTR) {
  }
  if (polled[0].revents != 0) return Waited::serverEnds;
  if (polled[1].revents != 0) return Waited::clientLeft;
  return Waited::ready;
}

}  // namespace support
