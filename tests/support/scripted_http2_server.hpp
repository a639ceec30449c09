// An HTTP/2 server with TLS on loopback that sends exactly the frames of a test's script, those included that no
// well-behaved server sends. One thread a connection; nothing is timed.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "base/descriptors/file_descriptor.hpp"
#include "support/loopback_socket.hpp"
#include "support/test_certificates.hpp"

namespace support {

/// Frames as RFC 9113 numbers them. Their builders return the bytes to send.
namespace http2 {

enum class Error : std::uint32_t { none = 0, internal = 2, refusedStream = 7, cancel = 8, calmDown = 11, http1 = 13 };

inline constexpr std::uint32_t highestStream = 0x7fffffff;

/// Any frame, of a type and with flags that need not exist.
std::string frame(std::uint8_t type, std::uint8_t flags, std::uint32_t stream, std::string_view payload);

/// Header fields with nothing but this status: 103, 200.
std::string head(std::uint32_t stream, int status, bool isLast = false);
std::string data(std::uint32_t stream, std::string_view bytes, bool isLast);
/// Status 200 and the body.
std::string answer(std::uint32_t stream, std::string_view body);
std::string reset(std::uint32_t stream, Error error);
std::string goAway(std::uint32_t lastStream, Error error = Error::none);
std::string ping();
std::string setting(std::uint16_t name, std::uint32_t value);
std::string windowUpdate(std::uint32_t stream, std::uint32_t by);

}  // namespace http2

struct Http2Request {
  std::size_t connection;  // counted from 0
  std::uint32_t stream;
  std::string path;
};

/// A connection as a script sees it. The client's preface has been read and answered with empty SETTINGS.
class Http2Connection {
 public:
  virtual ~Http2Connection() = default;

  /// The next request, which has to fit into one frame; absent once the client has left. Acknowledges settings and
  /// pings on the way, and answers GOAWAY as `endOutput` does.
  virtual std::optional<Http2Request> request() = 0;
  /// Nothing happens where the client has left.
  virtual void send(std::string_view frames) = 0;
  /// Closes the server's direction: TLS close_notify, then FIN.
  virtual void endOutput() = 0;
};

class ScriptedHttp2Server {
 public:
  /// Behind its last line the connection is read until the client leaves.
  using Script = std::function<void(Http2Connection&)>;

  /// Throws std::runtime_error when TLS cannot be set up.
  ScriptedHttp2Server();
  /// Ends every connection and joins every thread.
  ~ScriptedHttp2Server();
  ScriptedHttp2Server(const ScriptedHttp2Server&) = delete;
  ScriptedHttp2Server& operator=(const ScriptedHttp2Server&) = delete;

  /// "https://127.0.0.1:PORT" and the path.
  std::string url(std::string_view path = {}) const;
  /// The root certificate that a client has to trust.
  std::string authorityFile() const { return certificates_.authorityFile(); }

  /// For each connection that is accepted from now on.
  void serve(Script script);

  std::vector<Http2Request> requests() const;
  std::size_t connectionCount() const;
  /// Whether every connection has been closed by the client; false when that has not happened within `longPatience`.
  bool waitUntilAllAreClosed() const;

 private:
  class TlsContext;
  class TlsConnection;

  void acceptConnections();
  void run(std::size_t number, int socket);

  const TestCertificates certificates_;
  const std::unique_ptr<TlsContext> context_;
  const LoopbackListener listener_;

  mutable std::mutex mutex_;
  mutable std::condition_variable changed_;
  Script script_;
  std::vector<Http2Request> requests_;
  std::vector<base::FileDescriptor> sockets_;  // open until the server ends, so that it can shut each down
  std::size_t openConnections_ = 0;
  bool ending_ = false;

  std::vector<std::thread> connections_;  // the accepting thread's own, until it is joined
  std::thread acceptor_;
};

}  // namespace support
