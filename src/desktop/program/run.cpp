#include "desktop/program/run.hpp"

#include <cstdio>
#include <cstdlib>
#include <optional>

#include <gtk/gtk.h>
#include <unistd.h>

#include "desktop/appearance/appearance_portal.hpp"
#include "desktop/glib/session_bus.hpp"
#include "desktop/program/desktop.hpp"
#include "desktop/program/opening.hpp"
#include "desktop/program/shown_desktop.hpp"
#include "desktop/program/single_instance.hpp"
#include "desktop/windows/display_way.hpp"
#include "desktop/windows/toolkit_look.hpp"
#include "host/command_line/programs.hpp"
#include "host/diagnostics/diagnostics.hpp"
#include "render/type/fatal_messages.hpp"
#include "render/type/typesetter.hpp"

namespace desktop {
namespace {

std::unexpected<host::CommandFailure> failure(const char* message) {
  return std::unexpected(host::CommandFailure{host::exit_status::noAnswer, message});
}

std::optional<PlacementStore> placementStore(const Messages& messages) {
  const auto file = placementsFile(std::getenv);
  if (!file) {
    messages.say("neither XDG_CONFIG_HOME nor HOME is set; where widgets are placed is not kept");
    return std::nullopt;
  }
  return PlacementStore(*file);
}

/// Applies the desktop's look to the boards: the settings portal's, else the toolkit's. Follows changes until it is
/// destroyed.
class Look {
 public:
  explicit Look(Desktop& desktop) : desktop_(desktop) {
    apply();
    // Asked asynchronously: the bus may have to start the portal first.
    const auto bus = sessionBusToAsk();
    if (!bus) return;
    portal_.emplace(*bus, [this](const DesktopAppearance& appearance) {
      asked_ = appearance;
      apply();
    });
  }
  Look(const Look&) = delete;
  Look& operator=(const Look&) = delete;

 private:
  void apply() {
    const auto toolkit = toolkitLook();
    const auto appearance = asked_.scheme.value_or(toolkit.appearance);
    desktop_.setLook({.appearance = appearance, .accent = asked_.accent});
    desktop_.setTextScale(toolkit.textScale);
  }

  Desktop& desktop_;
  DesktopAppearance asked_;
  ToolkitLookChanges toolkitChanges_{[this] { apply(); }};
  std::optional<AppearancePortal> portal_;
};

}  // namespace

host::CommandResult run(const host::CommandLine& line) {
  const Messages messages(line.verbose);
  const auto way = chooseDisplayWay();
  if (line.command == host::Command::doctor) {
    std::puts(std::string(describe(way)).c_str());
    return {};
  }
  if (way == DisplayWay::none) return failure("no display is reachable; vamba-host show shows the day without one");
  const Opening opening(messages);
  useDisplayWay(way);
  messages.sayIfVerbose("the display: " + std::string(describe(way)));

  render::endWithStatusOnFatalMessages("vamba-host");
  render::beginLoadingFonts();  // while the toolkit and the extension start
  // Times, numbers and the host's texts are formatted without a C locale.
  gtk_disable_setlocale();
  // The name of the desktop entry, by which shells match the windows to it.
  g_set_prgname("pl.ferol.vamba.Desktop");
  g_set_application_name("Vamba");
  if (gtk_init_check(nullptr, nullptr) == FALSE) return failure("the display can't be opened");
  onXServerLost(way, [] {
    host::say(host::Priority::error, "the display has gone");
    // Xlib does not allow its error handler to return.
    _exit(host::exit_status::noAnswer);
  });

  Desktop* running = nullptr;
  using Request = SingleInstance::Request;
  SingleInstance instance([&running](Request request) {
    if (running == nullptr) return;
    if (request == Request::focus) {
      running->focusBoards();
    } else {
      running->openGallery();
    }
  });
  switch (instance.claim(line.focus ? Request::focus : Request::gallery)) {
    case SingleInstance::Claim::told:
      messages.say(line.focus ? "the widgets are on the desktop already; they come to the front"
                              : "the widgets are on the desktop already; their gallery opens");
      return {};
    case SingleInstance::Claim::refused:
      return failure("the widgets are on the desktop already, and there is no session bus to reach them by");
    case SingleInstance::Claim::first:
      break;
  }

  auto store = placementStore(messages);
  auto loaded = store ? store->load() : LoadedPlacements{.firstStart = true};
  if (loaded.notice) messages.say(*loaded.notice);
  if (line.atLogin && loaded.state.placements.empty() && !loaded.firstStart && !loaded.notice) {
    messages.sayIfVerbose("no widget is placed, so nothing is started at login");
    return {};
  }
  std::optional<PlacementSaver> saver;
  if (store) saver.emplace(*std::move(store), [&messages](const std::string& why) { messages.say(why); });

  MainLoop loop;
  Desktop desktop({.loop = loop,
                   .messages = messages,
                   .opening = opening,
                   .way = way,
                   .loaded = std::move(loaded),
                   .saver = saver ? &*saver : nullptr},
                  {.program = host::extensionProgram(line)});
  running = &desktop;
  const Look look(desktop);
  std::optional<ShownDesktop> shownDesktop;
  if (const auto bus = sessionBusToAsk(); bus && way == DisplayWay::layerShell && compositorIsKwin()) {
    shownDesktop.emplace(*bus, [&desktop](bool shown) { desktop.keepAboveShownDesktop(shown); });
  }
  desktop.begin();
  // The windows have to be shown first.
  if (line.focus) MainLoop::postWhenIdle([&desktop] { desktop.focusBoards(); });
  loop.run();
  running = nullptr;
  return {};
}

}  // namespace desktop
