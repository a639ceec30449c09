// Gives up, for good, every right that a process does not need once it runs: it can then start no program, gain no
// right, open no file for writing and read only the files that it names.
//
//   const auto missing = platform::keepLeastRights(platform::filesOfTheSystem());
//
//   execve, fork, ptrace, mount, setuid        EPERM
//   open("notes", O_WRONLY)                    EACCES
//   open("~/.ssh/id_ed25519", O_RDONLY)        EACCES, where the kernel has Landlock
//   threads, sockets to servers                work as before
//
// A forbidden call fails with an errno; no call ends the process.
#pragma once

#include <string>
#include <vector>

#include "platform/sandbox/reachable_files.hpp"

namespace platform {

/// False in builds for sanitizers and for coverage, whose run-time libraries need more rights.
#ifdef VAMBA_WITHOUT_SANDBOX
inline constexpr bool sandboxIsBuiltIn = false;
#else
inline constexpr bool sandboxIsBuiltIn = true;
#endif

/// Call it before the first thread is started: threads that exist already keep their right to read files. Files that
/// are open stay open. Returns one line for each restriction that could not be applied; the others hold all the same.
std::vector<std::string> keepLeastRights(const std::vector<ReachableFile>& files);

}  // namespace platform
