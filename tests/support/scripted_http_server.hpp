// An HTTP server on loopback that does exactly what a test tells it, faults included, and keeps every byte it was sent.
// One thread a connection. Nothing is timed: a test holds an answer back with an Event.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <variant>
#include <vector>

#include "base/descriptors/file_descriptor.hpp"
#include "support/loopback_socket.hpp"

namespace support {

/// Set once by a test; steps of the server wait for it.
class Event {
 public:
  Event();
  void set();
  int descriptor() const { return descriptor_.get(); }

 private:
  base::FileDescriptor descriptor_;
};

/// A well-formed answer. Content-Length is added unless `headers` holds a length or an encoding of its own.
struct HttpAnswer {
  int status = 200;
  std::string body = {};
  std::vector<std::pair<std::string, std::string>> headers = {};

  std::string bytes() const;
};

/// The steps of a script. Behind the last one the connection takes its next request.
struct Send {
  std::string bytes;
};
/// One byte at a time with a pause behind each.
struct Drip {
  std::string bytes;
  std::chrono::milliseconds pause;
};
struct Await {
  std::shared_ptr<Event> event;
};
/// Says nothing until the client or the server ends.
struct Stall {};
struct Close {};
/// Closes with a TCP reset.
struct Reset {};
using Step = std::variant<Send, Drip, Await, Stall, Close, Reset>;

struct RecordedRequest {
  std::size_t connection;  // counted from 0
  std::string target;      // as in the request line
  std::string raw;         // up to and with the first blank line

  /// The first field of this name, without the blanks around it.
  std::optional<std::string> header(std::string_view name) const;
};

class ScriptedHttpServer {
 public:
  ScriptedHttpServer();
  /// Ends every connection and joins every thread.
  ~ScriptedHttpServer();
  ScriptedHttpServer(const ScriptedHttpServer&) = delete;
  ScriptedHttpServer& operator=(const ScriptedHttpServer&) = delete;

  std::uint16_t port() const { return listener_.port; }
  /// "http://127.0.0.1:PORT" and the path.
  std::string url(std::string_view path = {}) const;

  /// What a request for this target gets from now on; "*" is for every target without a script of its own, which else
  /// gets a 404.
  void answer(const std::string& target, const HttpAnswer& answer) { script(target, {Send{answer.bytes()}}); }
  void script(const std::string& target, std::vector<Step> steps);

  /// What every new connection gets before its first request is read.
  void onAccept(std::vector<Step> steps);

  std::vector<RecordedRequest> requests() const;
  std::size_t connectionCount() const;
  /// Every byte that a connection was sent so far.
  std::string received(std::size_t connection) const;

  /// Wait for what the client does. False when it has not happened within `longPatience`.
  bool waitForRequests(std::size_t count) const;
  bool waitForConnections(std::size_t count) const;
  /// Connections that the client has ended.
  bool waitForHangUps(std::size_t count) const;

 private:
  enum class Waited { ready, clientLeft, serverEnds };

  void acceptConnections();
  void serve(std::size_t connection, int socket);
  std::optional<RecordedRequest> readRequest(std::size_t connection, int socket, std::string& pending);
  bool run(const std::vector<Step>& steps, int socket);
  bool perform(const Step& step, int socket);
  bool sendAll(int socket, std::string_view bytes) const;
  Waited waitFor(int descriptor, int socket, int milliseconds = -1) const;
  /// Records the request and returns its script, so that one which is set after `waitForRequests` is for later
  /// requests.
  std::vector<Step> takeUp(const RecordedRequest& request);

  LoopbackListener listener_;
  Event ending_;

  mutable std::mutex mutex_;
  mutable std::condition_variable changed_;
  std::map<std::string, std::vector<Step>> scripts_;
  std::vector<Step> acceptScript_;
  std::vector<RecordedRequest> requests_;
  std::vector<std::string> received_;
  std::size_t hangUps_ = 0;

  std::vector<std::thread> connections_;  // the accepting thread's own, until it is joined
  std::thread acceptor_;
};

}  // namespace support
