#include "desktop/placement/placements.hpp"

#include <algorithm>
#include <limits>
#include <utility>

namespace desktop {

const Placed* Placements::find(int id) const {
  const auto found = std::ranges::find(all_, id, &Placed::id);
  return found == all_.end() ? nullptr : &*found;
}

Placed* Placements::copy(int id) {
  const auto found = std::ranges::find(all_, id, &Placed::id);
  return found == all_.end() ? nullptr : &*found;
}

int Placements::freeId() const {
  int id = 1;
  for (const Placed& placed : all_) {
    if (placed.id < std::numeric_limits<int>::max()) id = std::max(id, placed.id + 1);
  }
  // Happens only after a file that holds the largest possible id.
  while (find(id) != nullptr) id = id == std::numeric_limits<int>::max() ? 1 : id + 1;
  return id;
}

std::optional<int> Placements::add(std::string kind, protocol::WidgetFamily family, Place place) {
  if (all_.size() >= mostCopies) return std::nullopt;
  const int id = freeId();
  all_.push_back({id, std::move(kind), family, std::move(place)});
  return id;
}

std::optional<int> Placements::restore(Placed placed, std::size_t position) {
  if (all_.size() >= mostCopies) return std::nullopt;
  if (find(placed.id) != nullptr) placed.id = freeId();
  const int id = placed.id;
  all_.insert(all_.begin() + static_cast<std::ptrdiff_t>(std::min(position, all_.size())), std::move(placed));
  return id;
}

void Placements::remove(int id) {
  std::erase_if(all_, [id](const Placed& placed) { return placed.id == id; });
}

void Placements::setKind(int id, std::string kind) {
  if (auto* placed = copy(id)) placed->kind = std::move(kind);
}

void Placements::setFamily(int id, protocol::WidgetFamily family) {
  if (Placed* placed = copy(id)) placed->family = family;
}

void Placements::setPlace(int id, Place place) {
  if (Placed* placed = copy(id)) placed->place = std::move(place);
}

void Placements::setZoom(int id, int zoom) {
  if (Placed* placed = copy(id)) placed->zoom = zoom;
}

}  // namespace desktop
