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
  /// Called at the end of input, before anything is waited for.
  std::function<void()> inputEnded = [] {};
};

/// Answers the host's requests, a line each, until the end of input; then the tasks in `tasks` are cancelled and waited
/// for, and what they would still have answered is dropped. Returns the process's exit status. The caller ignores
/// SIGPIPE, so that a host that left is a failed write.
int extensionMain(const WidgetBundle& bundle, base::TaskGroup& tasks, const ExtensionStreams& streams = {});

}  // namespace platform
