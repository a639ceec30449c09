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

#include "median.hpp"
#include "service_under_measure.hpp"
#include "support/displays/sway_desktop.hpp"
#include "support/displays/x_desktop.hpp"
#include "watched_program.hpp"

namespace {

using bench::Clock;
using bench::median;
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
  std::printf("%-26s %12s %10s %10s %12s\n", "", "wake-ups", "cpu", "memory", "children");
  std::printf("%-26s %12s %10s %10s %12s\n", "", "in the time", "ms", "PSS MB", "");
}

/// A program while nothing changes.
void measureIdle(const char* name, const WatchedProgram& program, int seconds) {
  program.settle();
  const auto before = program.use();
  std::this_thread::sleep_for(std::chrono::seconds(seconds));
  const auto after = program.use();
  std::printf("%-26s %12llu %10.0f %10.1f %12zu\n", name,
              static_cast<unsigned long long>(wakeUpsBetween(before, after)), after.cpuMs - before.cpuMs,
              program.pssMb(), program.children());
  std::fflush(stdout);
}

/// When a program shows its next frame, seen from outside of it.
using NextFrame = std::function<Clock::time_point(WatchedProgram&)>;

/// When some window of the program has pixels that are not black, as those of a window are before it is painted.
Clock::time_point firstFrameOnX(const support::XConnection& server, const WatchedProgram& program) {
  const auto isPainted = [&](support::XWindow window) {
    return server.isShown(window) && std::ranges::any_of(server.pictureOf(window).pixels, [](const auto& pixel) {
             return pixel.red + pixel.green + pixel.blue > 0;
           });
  };
  while (std::ranges::none_of(server.windowsOf(program.id()), isPainted)) {
    if (Clock::now() - program.started() > std::chrono::seconds(20)) throw std::runtime_error("no frame came");
    std::this_thread::sleep_for(std::chrono::microseconds(200));
  }
  return Clock::now();
}

/// When the program hands the compositor a picture, as the client library tells of it.
Clock::time_point nextFrameOnWayland(WatchedProgram& program) { return program.lineWith(".attach(wl_buffer@"); }

/// Both in turn, so that a busy moment hits both.
void measureStarts(const Programs& programs, const std::vector<std::string>& environment, const NextFrame& firstFrame) {
  std::vector<double> windows;
  std::vector<double> widgets;
  std::vector<double> ratios;
  for (int i = 0; i < programs.starts; ++i) {
    {
      WatchedProgram window({programs.minimalWindow}, environment);
      windows.push_back(msBetween(window.started(), firstFrame(window)));
    }
    WatchedProgram widget({programs.host, "--extension", programs.extension, "desktop", "--verbose"}, environment);
    widgets.push_back(msBetween(widget.started(), firstFrame(widget)));
    ratios.push_back(widgets.back() / windows.back());
  }
  std::printf("first frame: one medium widget %.1f ms, minimal window %.1f ms, median of the pairs' ratios %.2f\n",
              median(widgets), median(windows), median(ratios));
}

/// From the answer to a timeline to the painted board.
void measureTimeline(const Programs& programs, const std::vector<std::string>& environment) {
  std::vector<double> times;
  for (int i = 0; i < programs.starts; ++i) {
    WatchedProgram widget({programs.host, "--extension", programs.timedExtension, "desktop"}, environment);
    const auto answered = widget.lineWith("the timeline is answered");
    times.push_back(msBetween(answered, nextFrameOnWayland(widget)));
  }
  std::printf("from the timeline's answer to the painted board: %.1f ms\n", median(times));
}

void measure(const Programs& programs, const std::vector<std::string>& environment, const char* peer,
             const std::vector<std::string>& peerCommand) {
  printHead();
  {
    WatchedProgram widget({programs.host, "--extension", programs.extension, "desktop", "--verbose"}, environment);
    widget.lineWith("a new timeline is shown");
    measureIdle("one medium widget", widget, programs.seconds);
  }
  measureIdle("minimal window", WatchedProgram({programs.minimalWindow}, environment), programs.seconds);
  const WatchedProgram other(peerCommand, environment);
  measureIdle(peer, other, programs.seconds);
  std::printf("\n");
}

void onX(const Programs& programs, const bench::Command& extension) {
  support::XDesktop desktop;
  const std::string configuration = desktop.bus().path("conky.conf");
  std::ofstream(configuration)
      << "conky.config = { own_window = true, own_window_type = 'normal', update_interval = 1,\n"
         "  minimum_width = 480, minimum_height = 320, use_xft = true, font = 'Inter:size=10',\n"
         "  double_buffer = true }\n"
         "conky.text = [[\nVamba  4 do decyzji\n09:00 Narada redakcyjna\n10:30 Konsultacje\n"
         "#41 Rozliczenie delegacji\n#57 Odpowiedzi recenzentom\n]]\n";
  std::printf("X11, %d s each\n", programs.seconds);
  const auto environment = withService(desktop.environment(), extension, programs);
  measureStarts(programs, environment,
                [&](const WatchedProgram& program) { return firstFrameOnX(desktop.windows(), program); });
  measure(programs, environment, "conky", {"conky", "-c", configuration});
}

void onWayland(const Programs& programs, const bench::Command& extension) {
  support::SwayDesktop desktop;
  const std::string configuration = desktop.bus().path("waybar.json");
  std::ofstream(configuration)
      << R"({"layer":"bottom","height":320,"modules-left":["custom/day"],"custom/day":{"format":"09:00 Narada redakcyjna"}})";
  std::printf("Wayland, %d s each\n", programs.seconds);
  const auto environment = withService(desktop.environment(), extension, programs);
  auto talkative = environment;
  talkative.push_back("WAYLAND_DEBUG=1");
  measureStarts(programs, talkative, nextFrameOnWayland);
  measureTimeline(programs, talkative);
  measure(programs, environment, "waybar", {"waybar", "-c", configuration});
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
