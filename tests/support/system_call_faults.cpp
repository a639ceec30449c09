#include "support/system_call_faults.hpp"

#include <filesystem>
#include <fstream>

#include "support/child_process.hpp"
#include "support/sanitized.hpp"
#include "support/temporary_folder.hpp"

namespace support {
namespace {

ChildProcess traced(std::vector<std::string> options, const TracedCommand& command, const std::string& errorFile) {
  options.insert(options.begin(), {"strace", "-qqq"});
  options.insert(options.end(), command.words.begin(), command.words.end());
  return ChildProcess({.command = std::move(options),
                       .environment = command.environment,
                       .input = "",
                       .errorFile = errorFile,
                       .package = "strace"});
}

}  // namespace

std::optional<std::string> reasonNotToTrace() {
  if (sanitized) return "a sanitizer's library ends the process where its own system calls fail";
  const auto tried = traced({"-o", "/dev/null"}, {{"/bin/true"}, {"PATH=/usr/bin:/bin"}}, "/dev/null").exitStatus();
  if (tried != 0) return "here no process can trace another one";
  return std::nullopt;
}

void writeProgramWithoutLandlock(const std::string& file, const std::string& program) {
  std::ofstream(file) << "#!/bin/sh\nexec /usr/bin/strace -f -qqq -o /dev/null -e trace=landlock_create_ruleset "
                         "-e inject=landlock_create_ruleset:error=ENOSYS "
                      << program << '\n';
  std::filesystem::permissions(file, std::filesystem::perms::owner_all);
}

std::map<std::string, int> systemCallsOf(const TracedCommand& command) {
  const TemporaryFolder folder;
  const std::string log = folder.path("log");
  traced({"-o", log}, command, "/dev/null").exitStatus(std::chrono::minutes(1));
  std::map<std::string, int> counts;
  std::ifstream lines(log);
  for (std::string line; std::getline(lines, line);) {
    if (const auto end = line.find('('); end != std::string::npos) ++counts[line.substr(0, end)];
  }
  return counts;
}

std::optional<int> statusWith(const SystemCallFault& fault, const TracedCommand& command) {
  return traced({"-o", "/dev/null", "-e", "trace=" + fault.call, "-e",
                 "inject=" + fault.call + ":error=" + fault.error + ":when=" + std::to_string(fault.at)},
                command, "/dev/null")
      .exitStatus(std::chrono::minutes(1));
}

}  // namespace support
