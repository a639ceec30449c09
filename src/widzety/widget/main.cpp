// The process entry of `vamba-widzety`: it makes what the widget needs of the world and hands control to the
// extension's main routine. Nothing is read at start.
#include <csignal>
#include <cstdio>

#include <malloc.h>

#include "base/tasks/task_group.hpp"
#include "platform/calendar/clock.hpp"
#include "platform/keychain/system_keychain.hpp"
#include "platform/widget_kit/extension_main.hpp"
#include "widzety/widget/pakiet_widzetow.hpp"

namespace {

void napiszDlaCzlowieka(std::string_view linia) {
  std::fprintf(stderr, "vamba-widzety: %.*s\n", static_cast<int>(linia.size()), linia.data());
}

}  // namespace

int main() {
  // One heap for all threads: each of a load's short-lived threads would make one of its own before it does any work.
  mallopt(M_ARENA_MAX, 1);
  std::signal(SIGPIPE, SIG_IGN);
  const platform::SystemClock zegar;
  platform::SystemKeychain magazyn({.folderVariable = "VAMBA_KEYCHAIN_DIR",
                                    .folderBelowDataHome = "vamba/keychain",
                                    .diagnostics = napiszDlaCzlowieka});
  base::TaskGroup taski;
  const widzety::PakietWidzetow pakiet({zegar, magazyn, taski});
  return platform::extensionMain(pakiet, taski);
}
