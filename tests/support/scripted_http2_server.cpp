#include "support/scripted_http2_server.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <stdexcept>
#include <utility>

#include <nghttp2/nghttp2.h>
#include <openssl/ssl.h>
#include <sys/socket.h>

#include "support/waiting.hpp"

namespace support {
namespace {

constexpr std::string_view clientPreface = "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n";
constexpr std::size_t frameHeadLength = 9;

constexpr std::uint8_t endStream = 0x1;
constexpr std::uint8_t acknowledgement = 0x1;
constexpr std::uint8_t endHeaders = 0x4;
constexpr std::uint8_t padded = 0x8;
constexpr std::uint8_t withPriority = 0x20;

std::string bigEndian(std::uint64_t number, std::size_t length) {
  std::string bytes;
  for (std::size_t left = length; left-- > 0;) bytes += static_cast<char>(number >> (8 * left));
  return bytes;
}

std::uint32_t numberIn(std::string_view bytes) {
  std::uint32_t number = 0;
  for (const char byte : bytes) number = number << 8 | static_cast<unsigned char>(byte);
  return number;
}

struct Frame {
  std::uint8_t type;
  std::uint8_t flags;
  std::uint32_t stream;
  std::string payload;
};

/// Decodes header blocks in their order; the decoder remembers earlier ones.
class HeaderDecoder {
 public:
  HeaderDecoder() {
    if (nghttp2_hd_inflate_new(&inflater_) != 0) throw std::runtime_error("no decoder of HTTP/2 headers");
  }
  ~HeaderDecoder() { nghttp2_hd_inflate_del(inflater_); }
  HeaderDecoder(const HeaderDecoder&) = delete;
  HeaderDecoder& operator=(const HeaderDecoder&) = delete;

  /// The path of a request; absent where the block is malformed or has none.
  std::optional<std::string> pathIn(std::string_view block) {
    std::optional<std::string> path;
    for (int flags = 0; (flags & NGHTTP2_HD_INFLATE_FINAL) == 0;) {
      nghttp2_nv field{};
      const auto length = nghttp2_hd_inflate_hd2(inflater_, &field, &flags,
                                                 reinterpret_cast<const std::uint8_t*>(block.data()), block.size(), 1);
      if (length < 0) return std::nullopt;
      block.remove_prefix(static_cast<std::size_t>(length));
      if ((flags & NGHTTP2_HD_INFLATE_EMIT) == 0) continue;
      const std::string_view name(reinterpret_cast<const char*>(field.name), field.namelen);
      if (name == ":path") path.emplace(reinterpret_cast<const char*>(field.value), field.valuelen);
    }
    nghttp2_hd_inflate_end_headers(inflater_);
    return path;
  }

 private:
  nghttp2_hd_inflater* inflater_ = nullptr;
};

std::string_view blockIn(const Frame& frame) {
  std::string_view block = frame.payload;
  if ((frame.flags & padded) != 0) {
    const auto length = static_cast<unsigned char>(block.front());
    block = block.substr(1, block.size() - 1 - length);
  }
  if ((frame.flags & withPriority) != 0) block.remove_prefix(5);
  return block;
}

}  // namespace

namespace http2 {

std::string frame(std::uint8_t type, std::uint8_t flags, std::uint32_t stream, std::string_view payload) {
  return bigEndian(payload.size(), 3) + bigEndian(type, 1) + bigEndian(flags, 1) + bigEndian(stream, 4) +
         std::string(payload);
}

std::string head(std::uint32_t stream, int status, bool isLast) {
  // A field that is not added to the table (RFC 7541, 6.2.2), named by its place in the static table: 8 is ":status".
  return frame(NGHTTP2_HEADERS, isLast ? endHeaders | endStream : endHeaders, stream,
               std::string("\x08\x03") + std::to_string(status));
}

std::string data(std::uint32_t stream, std::string_view bytes, bool isLast) {
  return frame(NGHTTP2_DATA, isLast ? endStream : 0, stream, bytes);
}

std::string answer(std::uint32_t stream, std::string_view body) { return head(stream, 200) + data(stream, body, true); }

std::string reset(std::uint32_t stream, Error error) {
  return frame(NGHTTP2_RST_STREAM, 0, stream, bigEndian(static_cast<std::uint32_t>(error), 4));
}

std::string goAway(std::uint32_t lastStream, Error error) {
  return frame(NGHTTP2_GOAWAY, 0, 0, bigEndian(lastStream, 4) + bigEndian(static_cast<std::uint32_t>(error), 4));
}

std::string ping() { return frame(NGHTTP2_PING, 0, 0, "scripted"); }

std::string setting(std::uint16_t name, std::uint32_t value) {
  return frame(NGHTTP2_SETTINGS, 0, 0, bigEndian(name, 2) + bigEndian(value, 4));
}

std::string windowUpdate(std::uint32_t stream, std::uint32_t by) {
  return frame(NGHTTP2_WINDOW_UPDATE, 0, stream, bigEndian(by, 4));
}

}  // namespace http2

class ScriptedHttp2Server::TlsContext {
 public:
  explicit TlsContext(const TestCertificates& certificates) : context_(SSL_CTX_new(TLS_server_method())) {
    if (context_ == nullptr ||
        SSL_CTX_use_certificate_file(context_, certificates.certificateFile().c_str(), SSL_FILETYPE_PEM) != 1 ||
        SSL_CTX_use_PrivateKey_file(context_, certificates.keyFile().c_str(), SSL_FILETYPE_PEM) != 1) {
      SSL_CTX_free(context_);
      throw std::runtime_error("cannot set up TLS");
    }
    SSL_CTX_set_alpn_select_cb(context_, &TlsContext::chooseHttp2, nullptr);
  }
  ~TlsContext() { SSL_CTX_free(context_); }
  TlsContext(const TlsContext&) = delete;
  TlsContext& operator=(const TlsContext&) = delete;

  SSL* accept(int socket) const {
    SSL* const tls = SSL_new(context_);
    if (tls != nullptr && SSL_set_fd(tls, socket) == 1 && SSL_accept(tls) == 1) return tls;
    SSL_free(tls);
    return nullptr;
  }

 private:
  static int chooseHttp2(SSL*, const unsigned char** chosen, unsigned char* chosenLength, const unsigned char* offered,
                         unsigned int offeredLength, void*) {
    static constexpr std::array<unsigned char, 3> supported{2, 'h', '2'};
    unsigned char* selected = nullptr;
    const bool isOffered = SSL_select_next_proto(&selected, chosenLength, supported.data(), supported.size(), offered,
                                                 offeredLength) == OPENSSL_NPN_NEGOTIATED;
    *chosen = selected;
    return isOffered ? SSL_TLSEXT_ERR_OK : SSL_TLSEXT_ERR_ALERT_FATAL;
  }

  SSL_CTX* context_;
};

class ScriptedHttp2Server::TlsConnection final : public Http2Connection {
 public:
  TlsConnection(ScriptedHttp2Server& server, std::size_t number, int socket)
      : server_(server), number_(number), socket_(socket), tls_(server.context_->accept(socket)) {}
  ~TlsConnection() override {
    endOutput();
    SSL_free(tls_);
  }
  TlsConnection(const TlsConnection&) = delete;
  TlsConnection& operator=(const TlsConnection&) = delete;

  bool begin() {
    if (tls_ == nullptr || read(clientPreface.size()) != clientPreface) return false;
    send(http2::frame(NGHTTP2_SETTINGS, 0, 0, {}));
    return true;
  }

  std::optional<Http2Request> request() override {
    while (const auto frame = nextFrame()) {
      if (frame->type == NGHTTP2_SETTINGS && (frame->flags & acknowledgement) == 0) {
        send(http2::frame(NGHTTP2_SETTINGS, acknowledgement, 0, {}));
      } else if (frame->type == NGHTTP2_PING && (frame->flags & acknowledgement) == 0) {
        send(http2::frame(NGHTTP2_PING, acknowledgement, 0, frame->payload));
      } else if (frame->type == NGHTTP2_GOAWAY) {
        endOutput();
      } else if (frame->type == NGHTTP2_HEADERS) {
        const auto path = decoder_.pathIn(blockIn(*frame));
        if (!path || (frame->flags & endHeaders) == 0) return std::nullopt;
        const Http2Request request{number_, frame->stream, *path};
        const std::lock_guard lock(server_.mutex_);
        server_.requests_.push_back(request);
        return request;
      }
    }
    return std::nullopt;
  }

  void send(std::string_view frames) override {
    if (tls_ != nullptr && !outputEnded_) SSL_write(tls_, frames.data(), static_cast<int>(frames.size()));
  }

  void endOutput() override {
    if (tls_ != nullptr && !std::exchange(outputEnded_, true)) SSL_shutdown(tls_);
    shutdown(socket_, SHUT_WR);
  }

  void readUntilTheClientLeaves() {
    while (request()) {
    }
  }

 private:
  std::optional<Frame> nextFrame() {
    const auto head = read(frameHeadLength);
    if (!head) return std::nullopt;
    const std::string_view bytes = *head;
    auto payload = read(numberIn(bytes.substr(0, 3)));
    if (!payload) return std::nullopt;
    return Frame{static_cast<std::uint8_t>(bytes[3]), static_cast<std::uint8_t>(bytes[4]),
                 numberIn(bytes.substr(5)) & http2::highestStream, *std::move(payload)};
  }

  std::optional<std::string> read(std::size_t length) {
    std::string bytes(length, '\0');
    for (std::size_t filled = 0; filled < length;) {
      const int count = SSL_read(tls_, bytes.data() + filled, static_cast<int>(length - filled));
      if (count <= 0) return std::nullopt;
      filled += static_cast<std::size_t>(count);
    }
    return bytes;
  }

  ScriptedHttp2Server& server_;
  const std::size_t number_;
  const int socket_;
  SSL* const tls_;
  HeaderDecoder decoder_;
  bool outputEnded_ = false;
};

ScriptedHttp2Server::ScriptedHttp2Server()
    : context_(std::make_unique<TlsContext>(certificates_)),
      listener_(LoopbackListener::open(SOMAXCONN)),
      acceptor_(&ScriptedHttp2Server::acceptConnections, this) {}

ScriptedHttp2Server::~ScriptedHttp2Server() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
    shutdown(listener_.socket.get(), SHUT_RDWR);  // `accept` fails
    for (const auto& each : sockets_) shutdown(each.get(), SHUT_RDWR);
  }
  acceptor_.join();
  for (std::thread& each : connections_) each.join();
}

std::string ScriptedHttp2Server::url(std::string_view path) const {
  return "https://127.0.0.1:" + std::to_string(listener_.port) + std::string(path);
}

void ScriptedHttp2Server::serve(Script script) {
  const std::lock_guard lock(mutex_);
  script_ = std::move(script);
}

std::vector<Http2Request> ScriptedHttp2Server::requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

std::size_t ScriptedHttp2Server::connectionCount() const {
  const std::lock_guard lock(mutex_);
  return sockets_.size();
}

bool ScriptedHttp2Server::waitUntilAllAreClosed() const {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, longPatience, [&] { return openConnections_ == 0; });
}

void ScriptedHttp2Server::acceptConnections() {
  while (true) {
    base::FileDescriptor socket(accept4(listener_.socket.get(), nullptr, nullptr, SOCK_CLOEXEC));
    const std::lock_guard lock(mutex_);
    if (ending_) return;
    if (!socket.isOpen()) continue;
    ++openConnections_;
    connections_.emplace_back(&ScriptedHttp2Server::run, this, sockets_.size(), socket.get());
    sockets_.push_back(std::move(socket));
  }
}

void ScriptedHttp2Server::run(std::size_t number, int socket) {
  // A client that has left is told by the failed call.
  sigset_t brokenPipe;
  sigemptyset(&brokenPipe);
  sigaddset(&brokenPipe, SIGPIPE);
  pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);
  Script script;
  {
    const std::lock_guard lock(mutex_);
    script = script_;
  }
  {
    TlsConnection connection(*this, number, socket);
    if (connection.begin()) {
      if (script) script(connection);
      connection.readUntilTheClientLeaves();
    }
  }
  const std::lock_guard lock(mutex_);
  --openConnections_;
  changed_.notify_all();
}

}  // namespace support
