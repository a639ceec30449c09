// Runs one program and says how long its answer took: wall time from just before its start, and the processor's time.
#pragma once

#include <string>
#include <vector>

namespace bench {

struct Command {
  std::vector<std::string> words;  // words[0] is the program's path
  std::vector<std::string> environment;
};

struct Measurement {
  double wallMs = 0;  // from just before the start
  double cpuMs = 0;   // user and system, over the program's whole life
  std::string line;   // the line waited for
};

/// Hands `request` over as standard input and waits for one line; the clock stops at its line end. Then the input is
/// closed and the program's end awaited. Throws std::runtime_error when it ends without a line.
Measurement untilAnswered(const Command& command, const std::string& request);

/// Waits for the end of the program, which is the end of the measurement. What it says is dropped: in parallel mode the
/// client draws its progress however silent it is asked to be. Throws std::runtime_error when it fails.
Measurement untilEnded(const Command& command);

}  // namespace bench
