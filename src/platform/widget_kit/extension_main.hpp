// The main routine of an extension process: it serves one host for as long as the host keeps its end open.
#pragma once

#include <functional>

#include <unistd.h>

#include "base/tasks/task_group.hpp"
#include "platform/widget_kit/widget_bundle.hpp"

namespace platform {

struct ExtensionStreams {
  /// Descriptors of the host's requests and of the answers to them, blocking or not.
  int requests = STDIN_FILENO;
  int answers = STDOUT_FILENO;
  /// Called once, when the first line has been read and before it is answered: until then no thread was started.
  std::function<void()> firstLineRead = [] {};
  /// Called at the end of input, before anything is waited for.
  std::function<void()> inputEnded = [] {};
};

/// Answers the host's requests, one a line, until the end of input. Then it cancels the tasks in `tasks`, waits for
/// them and drops their answers. Returns the process's exit status. The caller must ignore SIGPIPE, so that a write to
/// a host that has exited fails with EPIPE.
int extensionMain(const WidgetBundle& bundle, base::TaskGroup& tasks, const ExtensionStreams& streams = {});

}  // namespace platform
