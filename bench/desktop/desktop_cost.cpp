// What the widget costs a desktop, beside a minimal window of the toolkit and beside two programs with like contents,
// conky on X11 and waybar on Wayland, their contents being static: first frame, the way of a timeline to the screen,
// wake-ups and processor time while nothing changes, memory.
//
// usage: desktop-cost HOST EXTENSION MINIMAL-WINDOW TIMED-EXTENSION [--seconds N] [--starts N]
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <functional>
#include <thread>

#include "service_under_measure.hpp"
#include "support/displays/sway_desktop.hpp"
#include "support/displays/x_desktop.hpp"
#include "watched_program.hpp"

namespace {

using bench::Clock;
using bench::WatchedProgram;
using support::SessionBus;

struct Programs {
  std::string host;
  std::string extension;
  std::string minimalWindow;
  std::string timedExtension;
  int seconds = 60;
  int starts = 15;
};

double msBetween(Clock::time_point begin, Clock::time_point end) {
  return std::chrono::duration<double, std::milli>(end - begin).count();
}

double median(std::vector<double> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

/// A desktop's variables with those that the extension needs to find its service.
std::vector<std::string> withService(const SessionBus::Environment& desktop, const bench::Command& extension,
                                     const Programs& programs) {
  auto all = support::environmentLines(desktop);
  for (const auto& line : extension.environment) {
    if (line.starts_with("VAMBA_")) all.push_back(line);
  }
  all.push_back("TIMED_EXTENSION=" + programs.extension);
  return all;
}

void printHead() {
  std::printf("%-26s %12s %12s %10s %10s %12s\n", "", "first frame", "wake-ups", "cpu", "memory", "children");
  std::printf("%-26s %12s %12s %10s %10s %12s\n", "", "ms", "in the time", "ms", "PSS MB", "");
}

/// A program while nothing changes.
void measureIdle(const char* name, const WatchedProgram& program, double firstFrame, int seconds) {
  program.settle();
  const auto before = program.use();
  std::this_thread::sleep_for(std::chrono::seconds(seconds));
  const auto after = program.use();
  std::printf("%-26s %12.1f %12llu %10.0f %10.1f %12zu\n", name, firstFrame,
              static_cast<unsigned long long>(wakeUpsBetween(before, after)), after.cpuMs - before.cpuMs,
              program.pssMb(), program.children());
  std::fflush(stdout);
}

struct Starts {
  std::vector<double> widget;
  std::vector<double> window;
  std::vector<double> timelineToScreen;
};

/// Both in turn, so that a busy moment hits both.
Starts measureStarts(const Programs& programs, const std::vector<std::string>& environment) {
  Starts starts;
  for (int i = 0; i < programs.starts; ++i) {
    {
      WatchedProgram window({programs.minimalWindow}, environment);
      starts.window.push_back(msBetween(window.started(), window.lineWith("the first frame is shown")));
    }
    WatchedProgram widget({programs.host, "--extension", programs.timedExtension, "desktop", "--verbose"}, environment);
    starts.widget.push_back(msBetween(widget.started(), widget.lineWith("the first frame is shown")));
    const auto answered = widget.lineWith("the timeline is answered");
    starts.timelineToScreen.push_back(msBetween(answered, widget.lineWith("a new timeline is shown")));
  }
  return starts;
}

void measure(const Programs& programs, const std::vector<std::string>& environment, const char* peer,
             const std::vector<std::string>& peerCommand) {
  const auto starts = measureStarts(programs, environment);
  printHead();
  {
    WatchedProgram widget({programs.host, "--extension", programs.extension, "desktop", "--verbose"}, environment);
    widget.lineWith("a new timeline is shown");
    measureIdle("one medium widget", widget, median(starts.widget), programs.seconds);
  }
  {
    WatchedProgram window({programs.minimalWindow}, environment);
    window.lineWith("the first frame is shown");
    measureIdle("minimal window", window, median(starts.window), programs.seconds);
  }
  const WatchedProgram other(peerCommand, environment);
  measureIdle(peer, other, 0, programs.seconds);
  std::printf("first frame, beside the minimal window's: %.2f\n", median(starts.widget) / median(starts.window));
  std::printf("from the timeline's answer to the painted board: %.1f ms\n\n", median(starts.timelineToScreen));
}

void onX(const Programs& programs, const bench::Command& extension) {
  support::XDesktop desktop;
  const std::string configuration = desktop.bus().path("conky.conf");
  std::ofstream(configuration)
      << "conky.config = { own_window = true, own_window_type = 'normal', update_interval = 1,\n"
         "  minimum_width = 480, minimum_height = 240, use_xft = true, font = 'Inter:size=10',\n"
         "  double_buffer = true }\n"
         "conky.text = [[\nVamba  4 do decyzji\n09:00 Narada redakcyjna\n10:30 Konsultacje\n"
         "#41 Rozliczenie delegacji\n#57 Odpowiedzi recenzentom\n]]\n";
  std::printf("X11, %d s each\n", programs.seconds);
  measure(programs, withService(desktop.environment(), extension, programs), "conky (no first frame)",
          {"conky", "-c", configuration});
}

void onWayland(const Programs& programs, const bench::Command& extension) {
  support::SwayDesktop desktop;
  const std::string configuration = desktop.bus().path("waybar.json");
  std::ofstream(configuration)
      << R"({"layer":"bottom","height":240,"modules-left":["custom/day"],"custom/day":{"format":"09:00 Narada redakcyjna"}})";
  std::printf("Wayland, %d s each\n", programs.seconds);
  measure(programs, withService(desktop.environment(), extension, programs), "waybar (no first frame)",
          {"waybar", "-c", configuration});
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 5) {
    std::fputs("usage: desktop-cost HOST EXTENSION MINIMAL-WINDOW TIMED-EXTENSION [--seconds N] [--starts N]\n",
               stderr);
    return 2;
  }
  Programs programs{argv[1], argv[2], argv[3], argv[4]};
  for (int i = 5; i + 1 < argc; i += 2) {
    (std::strcmp(argv[i], "--seconds") == 0 ? programs.seconds : programs.starts) = std::stoi(argv[i + 1]);
  }
  try {
    const bench::ServiceUnderMeasure service(support::NginxProtocol::plainHttp1);
    const auto extension = service.extension(programs.extension, {});
    onX(programs, extension);
    onWayland(programs, extension);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "desktop-cost: %s\n", error.what());
    return 1;
  }
}
