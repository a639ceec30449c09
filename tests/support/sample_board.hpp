// Boards as a day widget would write them, for tests of what draws and reads view trees. They are data of these tests:
// no widget is linked.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "protocol/view_tree/node.hpp"

namespace support {

struct SampleMeeting {
  std::string time;
  std::string title;
  std::string project;
  std::string mark;
};

struct SampleTask {
  std::int64_t number;
  std::string title;
  std::string project;
  std::string mark;
};

struct SampleBoard {
  std::int64_t decisions = 0;
  std::string sentence;  ///< instead of rows, where not empty
  std::string noMeetings = "Brak umówionych spotkań";
  std::vector<SampleMeeting> meetings;
  std::vector<SampleTask> tasks;
  std::int64_t hidden = 0;
};

/// The tree with its keys not yet worded. An empty project or mark has no line.
protocol::Node viewOf(const SampleBoard& board);

}  // namespace support
