// The process entry of `vamba-widzety`: makes the clock, the keychain and the tasks, and hands control to the
// extension's main routine. Nothing is read at start.
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "base/descriptors/standard_streams.hpp"
#include "base/descriptors/uncaught_exception.hpp"
#include "base/tasks/task_group.hpp"
#include "platform/calendar/clock.hpp"
#include "platform/keychain/system_keychain.hpp"
#include "platform/sandbox/least_rights.hpp"
#include "platform/widget_kit/extension_main.hpp"
#include "platform/widget_kit/extension_process.hpp"
#include "widzety/widget/widzet_dnia.hpp"

namespace {

void napiszDlaCzlowieka(std::string_view linia) {
  std::fprintf(stderr, "vamba-widzety: %.*s\n", static_cast<int>(linia.size()), linia.data());
}

}  // namespace

int main() {
  base::fillStandardStreams();
  platform::keepProcessPrivate();
  base::endProcessOnUncaughtException("vamba-widzety");
  platform::returnLargeBlocks();
  std::signal(SIGPIPE, SIG_IGN);
  const platform::SystemClock zegar;
  platform::SystemKeychain magazyn({.folderVariable = "VAMBA_KEYCHAIN_DIR",
                                    .folderBelowDataHome = "vamba/keychain",
                                    .diagnostics = napiszDlaCzlowieka});
  base::TaskGroup taski;
  const widzety::PakietWidzetow pakiet({zegar, magazyn, taski, napiszDlaCzlowieka});
  // Gives up every right that a load does not need. The outcome is reported only with VAMBA_VERBOSE, in lines that
  // `vamba-host doctor` reads; a user can do nothing about a restriction that the kernel lacks.
  const auto ograniczProces = [&magazyn] {
    auto pliki = platform::filesOfTheSystem();
    for (auto& plik : platform::filesOfKeychain(magazyn.folders())) pliki.push_back(std::move(plik));
    const auto braki = platform::keepLeastRights(pliki);
    if (std::getenv("VAMBA_VERBOSE") == nullptr) return;
    for (const auto& brak : braki) napiszDlaCzlowieka("goes on without a restriction: " + brak);
    if (braki.empty()) napiszDlaCzlowieka("has given up all rights that it does not need");
  };
  // A host may rely on the end within a second, even where a load hangs.
  const auto koniecWejscia = [] { platform::endProcessAfter(std::chrono::milliseconds(900)); };
  return platform::extensionMain(pakiet, taski, {.firstLineRead = ograniczProces, .inputEnded = koniecWejscia});
}
