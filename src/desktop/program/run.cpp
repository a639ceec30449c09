#include "desktop/program/run.hpp"

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <optional>

#include <malloc.h>
#include <unistd.h>

#include "desktop/appearance/appearance_portal.hpp"
#include "desktop/program/desktop.hpp"
#include "desktop/program/main_loop.hpp"
#include "desktop/program/single_instance.hpp"
#include "desktop/windows/display_way.hpp"
#include "desktop/windows/fonts_in_preparation.hpp"
#include "desktop/windows/theme.hpp"
#include "desktop/windows/toolkit_look.hpp"
#include "host/command_line/outcome.hpp"
#include "host/command_line/programs.hpp"

namespace desktop {
namespace {

std::unexpected<host::CommandFailure> failure(const char* message) {
  return std::unexpected(host::CommandFailure{host::exit_status::noAnswer, message});
}

std::optional<PlacementStore> placementStore(const Journal& journal) {
  const auto file = placementsFile([](const char* name) -> const char* { return std::getenv(name); });
  if (!file) {
    journal.say("neither XDG_CONFIG_HOME nor HOME is set; where widgets are placed is not kept");
    return std::nullopt;
  }
  return PlacementStore(*file);
}

/// How boards look: by the desktop's portal where it has a word, else by the toolkit's settings. Followed as long as
/// this lives.
class Look {
 public:
  Look(Desktop& desktop, const Theme& theme) : desktop_(desktop), theme_(theme) {
    onToolkitLookChange(apply_);
    apply();
  }
  Look(const Look&) = delete;
  Look& operator=(const Look&) = delete;

  /// It may have to be started first; nothing waits for it.
  void askPortal() {
    const auto bus = sessionBusToAsk();
    if (!bus) return;
    portal_.emplace(*bus, [this](const DesktopAppearance& appearance) {
      asked_ = appearance;
      apply();
    });
  }

 private:
  void apply() {
    const auto toolkit = toolkitLook(theme_);
    const auto appearance = asked_.scheme.value_or(toolkit.appearance);
    desktop_.setLook({.appearance = appearance, .accent = asked_.accent, .textScale = toolkit.textScale});
    useAppearance(appearance);
  }

  Desktop& desktop_;
  const Theme& theme_;
  DesktopAppearance asked_;
  std::function<void()> apply_ = [this] { apply(); };
  std::optional<AppearancePortal> portal_;
};

}  // namespace

host::CommandResult run(const host::CommandLine& line) {
  const Journal journal(line.verbose);
  const auto way = chooseDisplayWay();
  if (way == DisplayWay::none) return failure("no display is reachable; vamba-host show shows the day without one");
  useDisplayWay(way);
  journal.sayIfVerbose("the display: " + std::string(describe(way)));

  Theme theme;

  // One arena of memory for its threads, which seldom want any.
  mallopt(M_ARENA_MAX, 1);

  // A window's first text waits for them otherwise, longer than for anything else.
  FontsInPreparation fonts(host::languageTag(host::userLanguage()));

  Desktop* running = nullptr;
  SingleInstance instance([&running] {
    if (running != nullptr) running->openGallery();
  });
  MainLoop loop;
  const auto stacking = line.partOfDesktop ? Stacking::desktop : Stacking::below;
  Desktop desktop(
      {.loop = loop, .journal = journal, .theme = theme, .style = {way, stacking}, .store = placementStore(journal)},
      {.program = host::extensionProgram(line)});
  // Times and numbers are formatted without it, and the host's texts need no locale.
  gtk_disable_setlocale();
  if (gtk_init_check(nullptr, nullptr) == FALSE) return failure("the display can't be opened");
  sayWhenServerGoes(way, [] {
    std::fputs("vamba-host: the display has gone\n", stderr);
    // What Xlib calls this from is not to be left in any other way.
    _exit(host::exit_status::noAnswer);
  });
  if (!instance.claim()) {
    journal.say("the widgets are on the desktop already; their gallery opens");
    return {};
  }
  running = &desktop;
  Look look(desktop, theme);
  fonts.use();
  // What the extension has answered by now is shown at once.
  MainLoop::runPosted();
  desktop.begin([&look] { look.askPortal(); });
  loop.run();
  running = nullptr;
  return {};
}

}  // namespace desktop
