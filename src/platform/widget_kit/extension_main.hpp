// The main routine of an extension process: it serves one host for as long as the host keeps its end open.
#pragma once

#include <unistd.h>

#include "base/tasks/task_group.hpp"
#include "platform/widget_kit/widget_bundle.hpp"

namespace platform {

/// Descriptors of the host's requests and of the answers to them.
struct ExtensionStreams {
  int requests = STDIN_FILENO;
  int answers = STDOUT_FILENO;
};

/// Answers the host's requests, a line each, until the end of input; then the tasks in `tasks` are cancelled and waited
/// for, and what they would still have answered is dropped. Returns the process's exit status. The caller ignores
/// SIGPIPE, so that a host that left is a failed write.
int extensionMain(const WidgetBundle& bundle, base::TaskGroup& tasks, ExtensionStreams streams = {});

}  // namespace platform
