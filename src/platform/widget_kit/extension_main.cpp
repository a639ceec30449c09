#include "platform/widget_kit/extension_main.hpp"

#include <cstdlib>
#include <utility>

#include <poll.h>

#include "platform/widget_kit/request_server.hpp"
#include "protocol/json_rpc/line_reader.hpp"
#include "protocol/json_rpc/line_writer.hpp"

namespace platform {

int extensionMain(const WidgetBundle& bundle, base::TaskGroup& tasks, const ExtensionStreams& streams) {
  using Status = protocol::json_rpc::LineReader::Status;
  protocol::json_rpc::LineReader reader(streams.requests);
  protocol::json_rpc::LineWriter writer(streams.answers);
  RequestServer server(bundle, writer);

  bool hostListens = true;
  bool isFirst = true;
  while (hostListens) {
    const auto [status, line, error] = reader.next();
    const bool isLine = status == Status::line || status == Status::tooLong;
    if (isLine && std::exchange(isFirst, false)) streams.firstLineRead();
    if (status == Status::line) {
      hostListens = server.serve(line);
    } else if (status == Status::tooLong) {
      hostListens = server.refuseLongLine();
    } else if (status == Status::wouldBlock) {
      pollfd waited{streams.requests, POLLIN, 0};
      poll(&waited, 1, -1);  // the next read reports an error
    } else {
      break;
    }
  }
  streams.inputEnded();
  server.close();
  tasks.cancelAll();
  tasks.waitForAll();
  return EXIT_SUCCESS;
}

}  // namespace platform
