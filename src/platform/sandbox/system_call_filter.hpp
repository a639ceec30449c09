// seccomp: the kernel refuses system calls that the process does not need.
#pragma once

#include <optional>
#include <string>

namespace platform {

/// Refuses, in every thread, system calls that start programs, change identities, trace, mount, write files, signal
/// other processes or reach rarely used parts of the kernel. Returns why it could not be done.
std::optional<std::string> filterSystemCalls();

}  // namespace platform
