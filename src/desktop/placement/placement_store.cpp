#include "desktop/placement/placement_store.hpp"

#include <utility>

#include "base/files/quarantine.hpp"
#include "base/files/read_file.hpp"
#include "base/files/replace_file.hpp"
#include "desktop/placement/placement_document.hpp"

namespace desktop {
namespace {

constexpr const char* suffix = ".damaged";

}  // namespace

std::optional<std::filesystem::path> placementsFile(base::EnvironmentLookup environment) {
  const auto folder = base::userConfigFolder(environment);
  if (!folder) return std::nullopt;
  return *folder / "vamba" / "placements.json";
}

std::string PlacementStore::keepAside(const std::string& reason) {
  const std::string fault = file_.string() + " can't be used (" + reason + ")";
  const auto aside = base::quarantine(file_, suffix);
  stillInTheWay_ = !aside.has_value();
  if (!aside) return fault + " and could not be renamed: " + aside.error();
  return fault + "; it is kept as " + aside->string();
}

LoadedPlacements PlacementStore::load() {
  document_.clear();
  stillInTheWay_ = false;
  if (const auto target = base::behindLinks(file_)) base::removeLeftovers(*target);
  auto text = base::readFile(file_, largestPlacementDocument);
  if (!text && text.error().kind == base::ReadFailure::Kind::missing) return {.firstStart = true};
  if (!text) return {.notice = keepAside(text.error().reason)};
  auto document = readPlacements(*text);
  if (!document) return {.notice = keepAside(document.error())};
  document_ = *std::move(text);
  LoadedPlacements loaded{.state = std::move(document->state)};
  if (document->dropped > 0) {
    loaded.notice = keepAside(std::to_string(document->dropped) + " of its widgets can't be read");
    if (const auto saved = save(loaded.state); !saved) *loaded.notice += "; " + saved.error();
  }
  return loaded;
}

std::expected<void, std::string> PlacementStore::save(const DesktopState& state) {
  const auto failure = [&](const std::string& reason) {
    return std::unexpected("can't write " + file_.string() + ": " + reason);
  };
  if (stillInTheWay_) {
    if (const auto aside = base::quarantine(file_, suffix); !aside) return failure(aside.error());
    stillInTheWay_ = false;
  }
  // If the file is a link whose target is gone, the target's folder is created again.
  const auto target = base::behindLinks(file_);
  if (!target) return failure(target.error());
  if (const auto made = base::makeFolders(target->parent_path()); !made) return failure(made.error());
  std::string document = writePlacements(state, document_);
  const auto readBack = readPlacements(document);
  if (!readBack || readBack->dropped > 0) return failure("a name in it is too long");
  const auto replaced = base::replaceFile(*target, document, base::Durability::lasting, {.file = 0600});
  if (!replaced) return failure(replaced.error());
  document_ = std::move(document);
  return {};
}

}  // namespace desktop
