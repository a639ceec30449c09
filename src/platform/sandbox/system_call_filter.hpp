// seccomp: the kernel refuses system calls that the process does not need.
#pragma once

#include <optional>
#include <string>

namespace platform {

/// Refuses, in every thread, system calls that start programs or processes, trace or signal other processes, change
/// files, share memory or reach rarely used parts of the kernel. Calls that take a capability, such as mount, are left
/// to `keepLeastRights`, which drops all capabilities. Returns the reason where the filter cannot be installed.
std::optional<std::string> filterSystemCalls();

}  // namespace platform
