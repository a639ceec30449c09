// How long does `vamba-host show --format png --entry FILE` take as a whole process, its extension included, beside a
// program that draws one line of text into a PNG of the same size? The two are run in turn.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Words = std::vector<std::string>;

/// Wall time in milliseconds from just before the start to the end; negative where the program fails.
double timeOf(Words words) {
  std::vector<char*> arguments;
  for (auto& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t process = 0;
  const auto start = std::chrono::steady_clock::now();
  const int failed = posix_spawn(&process, arguments[0], &actions, nullptr, arguments.data(), environ);
  int status = 1;
  if (failed == 0) waitpid(process, &status, 0);
  const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
  posix_spawn_file_actions_destroy(&actions);
  return failed == 0 && status == 0 ? taken.count() : -1;
}

double median(std::vector<double> times) {
  const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
  std::nth_element(times.begin(), middle, times.end());
  return *middle;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) {
    std::fprintf(stderr, "usage: show-png HOST EXTENSION ENTRY ONE-LINE-PNG\n");
    return 2;
  }
  const Words show{argv[1], "--extension", argv[2], "show", "--format", "png", "--entry", argv[3]};
  const Words floor{argv[4]};
  constexpr int rounds = 41;
  std::vector<double> shows;
  std::vector<double> floors;
  std::vector<double> ratios;
  for (int round = -3; round < rounds; ++round) {
    const double one = timeOf(floor);
    const double other = timeOf(show);
    if (one < 0 || other < 0) {
      std::fprintf(stderr, "show-png: a program failed\n");
      return 1;
    }
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
}
