#include "host/command_line/nearest_word.hpp"

#include <algorithm>
#include <vector>

namespace host {
namespace {

/// The optimal string alignment distance: changes and swaps of letters, where no part of the text is changed twice.
std::size_t changesBetween(std::string_view a, std::string_view b) {
  std::vector<std::vector<std::size_t>> changes(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t j = 0; j <= b.size(); ++j) {
      auto& least = changes[i][j];
      if (i == 0 || j == 0) {
        least = i + j;
        continue;
      }
      const std::size_t other = a[i - 1] == b[j - 1] ? 0 : 1;
      least = std::min({changes[i - 1][j] + 1, changes[i][j - 1] + 1, changes[i - 1][j - 1] + other});
      const bool swapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (swapped) least = std::min(least, changes[i - 2][j - 2] + 1);
    }
  }
  return changes[a.size()][b.size()];
}

}  // namespace

std::optional<std::string> nearestWord(std::string_view given, std::span<const std::string> words) {
  constexpr std::size_t longest = 40;  // no word of the command line comes near it
  if (given.size() > longest) return std::nullopt;
  std::size_t most = std::max<std::size_t>(1, given.size() / 3);
  std::optional<std::string> nearest;
  for (const auto& word : words) {
    const std::size_t changes = changesBetween(given, word);
    if (changes > most || (nearest && changes == most)) continue;
    most = changes;
    nearest = word;
  }
  return nearest;
}

}  // namespace host
