// The example for Waybar in the real bar, on a real compositor: the bar shows the day of the test's own service in the
// example's colours, a click reloads it, and the widget's command ends with the bar.
#include <csignal>
#include <filesystem>
#include <optional>

#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "base/descriptors/file_descriptor.hpp"
#include "end_to_end/extension_fixture.hpp"
#include "support/child_process.hpp"
#include "support/displays/accessible_objects.hpp"
#include "support/displays/sway_desktop.hpp"
#include "support/file_content.hpp"
#include "support/waiting.hpp"

namespace end_to_end {
namespace {

namespace fs = std::filesystem;
using support::contentOf;
using support::eventually;
using support::Pixel;
using support::ScreenArea;

constexpr Pixel overdue{0xc0, 0x1c, 0x28, 255};  // in waybar.css
constexpr Pixel bar{0x10, 0x20, 0x30, 255};
constexpr Pixel plain{0xf0, 0xf1, 0xf2, 255};

/// The example's style, with colours for the bar and a border in the colour of the module's text: letters are blended
/// with the background, a border is not.
constexpr const char* style = R"(
@import url("EXAMPLES/waybar.css");
window#waybar { background: #102030; }
#custom-vamba { color: #f0f1f2; border-left: 20px solid currentColor; }
)";

/// The child process with exactly this command line, its arguments joined by spaces.
std::optional<pid_t> childThatRuns(pid_t parent, const std::string& command) {
  const auto process = std::to_string(parent);
  std::error_code gone;
  for (const auto& task : fs::directory_iterator("/proc/" + process + "/task", gone)) {
    std::istringstream children(contentOf(task.path() / "children"));
    for (pid_t child = 0; children >> child;) {
      std::string arguments = contentOf("/proc/" + std::to_string(child) + "/cmdline");
      for (auto& each : arguments) each = each == '\0' ? ' ' : each;
      if (arguments == command + " ") return child;
    }
  }
  return std::nullopt;
}

/// The smallest area that holds all pixels of this colour.
ScreenArea areaOf(const support::Bitmap& screen, Pixel colour) {
  int left = static_cast<int>(screen.width), top = static_cast<int>(screen.height), right = -1, bottom = -1;
  for (std::uint32_t y = 0; y < screen.height; ++y) {
    for (std::uint32_t x = 0; x < screen.width; ++x) {
      if (screen.at(x, y) != colour) continue;
      left = std::min(left, static_cast<int>(x));
      right = std::max(right, static_cast<int>(x));
      top = std::min(top, static_cast<int>(y));
      bottom = std::max(bottom, static_cast<int>(y));
    }
  }
  return right < 0 ? ScreenArea{} : ScreenArea{left, top, right - left + 1, bottom - top + 1};
}

class Waybar : public testing::Test {
 protected:
  Waybar() {
    items_.store("token-urzadzenia", "tajne-7");
    items_.store("adres-api", service_.url("/api"));
    service_.answer(inboxTarget, {.body = R"({"zadania": []})"});
    service_.answer(meetingsTarget, {.body = "[]"});
  }

  support::ChildProcess startBar() {
    std::string text = style;
    text.replace(text.find("EXAMPLES"), 8, VAMBA_STATUS_BARS);
    folder_.write("style.css", text);
    auto variables = desktop_.environment();
    variables["PATH"] = fs::path(VAMBA_HOST).parent_path().native() + ":" + std::getenv("PATH");
    variables["VAMBA_KEYCHAIN_DIR"] = folder_.path("keychain");
    variables["LANGUAGE"] = "en";
    variables["LC_ALL"] = "C.UTF-8";
    variables["TZ"] = "Europe/Warsaw";
    return support::ChildProcess(
        {.command = {"waybar", "-c", VAMBA_STATUS_BARS "/waybar.jsonc", "-s", folder_.path("style.css")},
         .environment = support::environmentLines(variables),
         .input = {},
         .errorFile = folder_.path("log"),
         .package = "waybar"});
  }

  /// Whether the screen comes to have an area of this colour at least as wide as the border.
  testing::AssertionResult comesToShow(Pixel colour, const std::string& name) {
    if (eventually([&] { return areaOf(desktop_.screenshot(), colour).width >= 20; }))
      return testing::AssertionSuccess();
    const auto screen = desktop_.screenshot();
    return support::showsTheSame(screen, {}, "waybar-" + name) << contentOf(folder_.path("log"));
  }
  /// Whether a label of the bar comes to have this text.
  testing::AssertionResult comesToSay(const support::ChildProcess& waybar, const std::string& text) {
    std::vector<std::string> names;
    const auto says = [&] {
      names.clear();
      for (const auto& object : objects_.of(waybar.id())) names.push_back(object.name);
      return std::ranges::count(names, text) == 1;
    };
    if (eventually(says)) return testing::AssertionSuccess();
    return testing::AssertionFailure() << testing::PrintToString(names) << contentOf(folder_.path("log"));
  }

  support::TemporaryFolder folder_;
  ItemFolder items_{folder_.path("keychain")};
  support::ScriptedHttpServer service_;
  support::SwayDesktop desktop_;
  support::AccessibleObjects objects_{desktop_.bus()};
};

TEST_F(Waybar, ShowsTheDayInTheExamplesColoursAndReloadsItOnAClick) {
  service_.answer(tasksTarget, {.body = json::array({serverTask(1, "Rozliczenie", "2020-01-01")}).dump()});
  const auto waybar = startBar();
  ASSERT_TRUE(comesToShow(bar, "bar"));
  ASSERT_TRUE(comesToShow(overdue, "overdue"));
  EXPECT_TRUE(comesToSay(waybar, "Tasks: 1"));

  service_.answer(tasksTarget, {.body = "[]"});
  const auto module = areaOf(desktop_.screenshot(), overdue).centre();
  eventually([&] {
    desktop_.input().click(module);
    return eventually([&] { return areaOf(desktop_.screenshot(), overdue) == ScreenArea{}; }, std::chrono::seconds(3));
  });
  EXPECT_TRUE(comesToShow(plain, "plain"));
  EXPECT_EQ(areaOf(desktop_.screenshot(), overdue), ScreenArea{});
  EXPECT_TRUE(comesToSay(waybar, "Nothing for today."));
}

TEST_F(Waybar, ItsCommandEndsWithIt) {
  service_.answer(tasksTarget, {.body = "[]"});
  auto waybar = startBar();
  ASSERT_TRUE(comesToShow(plain, "plain"));
  const auto watch = childThatRuns(waybar.id(), "vamba-host watch --format waybar");
  ASSERT_TRUE(watch) << contentOf(folder_.path("log"));
  const base::FileDescriptor process(static_cast<int>(syscall(SYS_pidfd_open, *watch, 0)));
  ASSERT_GE(process.get(), 0);
  waybar.kill();
  pollfd ended{process.get(), POLLIN, 0};
  EXPECT_TRUE(eventually([&] { return poll(&ended, 1, 0) == 1; }));
}

}  // namespace
}  // namespace end_to_end
