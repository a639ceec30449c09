#include "platform/widget_kit/extension_main.hpp"

#include <cstdlib>

#include "platform/json_rpc/line_reader.hpp"
#include "platform/json_rpc/line_writer.hpp"
#include "platform/widget_kit/request_server.hpp"

namespace platform {

int extensionMain(const WidgetBundle& bundle, TaskGroup& tasks, ExtensionStreams streams) {
  using Status = json_rpc::LineReader::Status;
  json_rpc::LineReader reader(streams.requests);
  json_rpc::LineWriter writer(streams.answers);
  RequestServer server(bundle, writer);

  bool hostListens = true;
  while (hostListens) {
    const auto [status, line, error] = reader.next();
    if (status == Status::line) {
      hostListens = server.serve(line);
    } else if (status == Status::tooLong) {
      hostListens = server.refuseLongLine();
    } else {
      break;
    }
  }
  server.close();
  tasks.cancelAll();
  tasks.waitForAll();
  return EXIT_SUCCESS;
}

}  // namespace platform
