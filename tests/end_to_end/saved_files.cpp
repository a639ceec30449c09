// A program that saves as the desktop and as `sign-in` do, for a test that makes one of its system calls fail:
//   saved_files placements FILE open|locked    loads FILE, then saves it with the widgets locked or not
//   saved_files token FOLDER TOKEN
// Ends with status 0 where it has saved, else 1.
#include <cstdio>
#include <string>

#include "base/descriptors/uncaught_exception.hpp"
#include "desktop/placement/placement_store.hpp"
#include "host/credentials/credential_store.hpp"

int main(int argc, char** argv) {
  base::endProcessOnUncaughtException("saved_files");
  if (argc != 4) return 2;
  const std::string what = argv[1];
  std::expected<void, std::string> saved;
  if (what == "placements") {
    desktop::PlacementStore store(argv[2]);
    store.load();
    desktop::DesktopState state;
    state.placements.add("Dzien", protocol::WidgetFamily::systemMedium,
                         {{"Acme", "P27", "A1", "DP-1"}, desktop::Corner::topRight, {20, 40}});
    state.settings.locked = argv[3] == std::string("locked");
    saved = store.save(state);
  } else {
    saved = host::writeItemFile(argv[2], "token-urzadzenia", argv[3]);
  }
  if (!saved) std::fprintf(stderr, "%s\n", saved.error().c_str());
  return saved ? 0 : 1;
}
