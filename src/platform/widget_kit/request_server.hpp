// The extension's side of the protocol (docs/protocol.md): takes requests and writes each answer when it is ready.
#pragma once

#include <atomic>
#include <cstddef>
#include <expected>
#include <memory>
#include <string>
#include <string_view>

#include "platform/widget_kit/widget_bundle.hpp"
#include "protocol/json_rpc/line_writer.hpp"
#include "protocol/json_rpc/message.hpp"

namespace platform {

/// A longer request, in bytes, holds more than the largest entry that a host accepts. Its strings and white space are
/// cut before it is parsed, and it is refused if more than `longestCutRequest` remains: each text exists in six copies
/// between request and answer.
inline constexpr std::size_t longestWholeRequest = std::size_t{17} << 20;
inline constexpr std::size_t longestCutRequest = std::size_t{4} << 20;
/// Twice as much as a host draws of one text.
inline constexpr std::size_t longestCutString = std::size_t{128} << 10;

/// Requests are handed in one after another; answers of asynchronous ones come from their tasks' threads.
class RequestServer {
 public:
  RequestServer(const WidgetBundle& bundle, protocol::json_rpc::LineWriter& writer)
      : bundle_(bundle), writer_(writer) {}

  /// Answers one line, or starts the task that will. Returns false once the host has closed its end.
  bool serve(std::string_view line);
  bool refuseLongLine();  ///< of more than 64 MiB

  /// Drops every answer from here on.
  void close() { open_ = false; }

 private:
  /// JSON text on one line.
  using Result = std::expected<std::string, protocol::json_rpc::Error>;

  /// Sends the answer to one request when it is ready.
  struct Reply {
    RequestServer* server;
    nlohmann::json id;
    void operator()(Result result) const;
  };

  struct Target;

  bool refuse(std::string sentence);
  void dispatch(protocol::json_rpc::Request request);
  void answer(std::string line);

  Result widgets() const;
  std::expected<Target, protocol::json_rpc::Error> target(const nlohmann::json& params) const;
  static Result placeholder(const Target& target);
  static void snapshot(const Target& target, const nlohmann::json& params, Reply reply);
  static void timeline(const Target& target, Reply reply);
  static Result render(const Target& target, const nlohmann::json& params);

  const WidgetBundle& bundle_;
  protocol::json_rpc::LineWriter& writer_;
  std::atomic<bool> open_ = true;
};

}  // namespace platform
