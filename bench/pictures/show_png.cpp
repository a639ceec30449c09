// How long does `vamba-host show --format png --entry FILE` take as a whole process, its extension included, beside a
// program that draws one line of text into a PNG of the same size? The two are run in turn.
#include <cstdio>
#include <exception>
#include <string>
#include <utility>
#include <vector>

#include <unistd.h>

#include "median.hpp"
#include "timed_process.hpp"

namespace {

/// Wall time in milliseconds from just before the start to the end, in the environment of this program.
double timeOf(std::vector<std::string> words) {
  bench::Command command{.words = std::move(words)};
  for (char** variable = environ; *variable != nullptr; ++variable) command.environment.emplace_back(*variable);
  return bench::untilEnded(command).wallMs;
}

}  // namespace

int main(int argc, char** argv) try {
  using bench::median;
  if (argc != 5) {
    std::fprintf(stderr, "usage: show-png HOST EXTENSION ENTRY ONE-LINE-PNG\n");
    return 2;
  }
  const std::vector<std::string> show{argv[1], "--extension", argv[2], "show", "--format", "png", "--entry", argv[3]};
  const std::vector<std::string> floor{argv[4]};
  constexpr int rounds = 41;
  std::vector<double> shows;
  std::vector<double> floors;
  std::vector<double> ratios;
  for (int round = -3; round < rounds; ++round) {
    const double one = timeOf(floor);
    const double other = timeOf(show);
    if (round < 0) continue;  // warms the caches of files and fonts
    floors.push_back(one);
    shows.push_back(other);
    ratios.push_back(other / one);
  }
  std::printf("one line of text as a PNG     %6.2f ms, median of %d\n", median(floors), rounds);
  std::printf("vamba-host show --format png  %6.2f ms\n", median(shows));
  std::printf("ratio of the medians          %6.2f\n", median(shows) / median(floors));
  std::printf("median of the pairs' ratios   %6.2f\n", median(ratios));
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "show-png: %s\n", error.what());
  return 1;
}
