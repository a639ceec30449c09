#include "desktop/program/run.hpp"

#include <cstdlib>
#include <functional>
#include <optional>

#include <malloc.h>

#include "desktop/program/desktop.hpp"
#include "desktop/program/main_loop.hpp"
#include "desktop/program/single_instance.hpp"
#include "desktop/windows/display_way.hpp"
#include "desktop/windows/toolkit_look.hpp"
#include "host/commands/exit_status.hpp"
#include "host/commands/program_folder.hpp"

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

/// Follows the toolkit's settings.
class Look {
 public:
  explicit Look(Desktop& desktop) : desktop_(desktop) {
    onToolkitLookChange(apply_);
    apply();
  }
  Look(const Look&) = delete;
  Look& operator=(const Look&) = delete;

 private:
  void apply() {
    const auto toolkit = toolkitLook();
    desktop_.setLook({.appearance = toolkit.appearance, .accent = std::nullopt, .textScale = toolkit.textScale});
  }

  Desktop& desktop_;
  std::function<void()> apply_ = [this] { apply(); };
};

}  // namespace

host::CommandResult run(const host::CommandLine& line) {
  const Journal journal(line.verbose);
  const auto way = chooseDisplayWay();
  if (way == DisplayWay::none) return failure("no display is reachable; vamba-host show shows the day without one");
  useDisplayWay(way);
  journal.sayIfVerbose("the display: " + std::string(describe(way)));
  // One arena of memory for its three threads, which seldom want any.
  mallopt(M_ARENA_MAX, 1);

  Desktop* running = nullptr;
  const SingleInstance instance([&running] {
    if (running != nullptr) running->openGallery();
  });
  if (!instance.isFirst()) {
    journal.say("the widgets are on the desktop already; their gallery opens");
    return {};
  }

  MainLoop loop;
  const auto stacking = line.partOfDesktop ? Stacking::desktop : Stacking::below;
  Desktop desktop({.loop = loop, .journal = journal, .style = {way, stacking}, .store = placementStore(journal)},
                  {.program = line.extension.value_or(host::usualExtensionPath())});
  // Times and numbers are formatted without it, and the host's texts need no locale.
  gtk_disable_setlocale();
  if (gtk_init_check(nullptr, nullptr) == FALSE) return failure("the display can't be opened");
  running = &desktop;
  const Look look(desktop);
  desktop.begin();
  loop.run();
  running = nullptr;
  return {};
}

}  // namespace desktop
