// Boards as the day widget builds them, in every state and with localised texts, for the layout and picture tests.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "protocol/view_tree/node.hpp"

namespace render::testing {

enum class Family { small, medium, large };

struct MeetingRow {
  std::string time;
  std::string title;
  std::optional<std::string> project;
  std::optional<std::string> mark;
};

struct TaskRow {
  std::int64_t number = 0;
  std::string title;
  std::string project;
  std::optional<std::string> mark;
};

struct BoardContent {
  std::int64_t awaiting = 0;
  std::string badge = " do decyzji";
  std::optional<std::string> sentence;  ///< alone below the header: an error, or nothing today
  std::string noMeetings = "Brak umówionych spotkań";
  std::vector<MeetingRow> meetings;
  std::vector<TaskRow> tasks;
};

/// The board of a family. Lists are cut to what the family shows; the rest is counted in the last line.
protocol::Node board(const BoardContent& content, Family family);

enum class Language { polish, english, lithuanian };
enum class State { full, empty, noMeetings, noTasks, overlongTitles, error };

/// The samples of the matrix test: every row has a project and a mark if the state has rows.
BoardContent sampleContent(State state, Language language, std::int64_t awaiting);

}  // namespace render::testing
