// The copies of widgets that a person placed, as a value: of which widget, in which size, at which place. The
// arrangement computes where they are on the connected monitors; the store saves them.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "desktop/placement/place.hpp"
#include "protocol/view_tree/widget_family.hpp"

namespace desktop {

struct Placed {
  int id = 0;        ///< from 1; identifies the copy as long as it is placed
  std::string kind;  ///< of the widget, as the extension declares it
  protocol::WidgetFamily family = protocol::WidgetFamily::systemMedium;
  Place place;
  int zoom = 100;  ///< its size in percent of the family's
  bool operator==(const Placed&) const = default;
};

/// The smallest and the largest zoom in percent.
inline constexpr int leastZoom = 50;
inline constexpr int mostZoom = 300;

/// More than fit on any desktop. A file with more is refused.
inline constexpr std::size_t mostCopies = 100;

/// In the order in which they were added.
class Placements {
 public:
  Placements() = default;
  /// At most `mostCopies`, each with an id of its own, from 1.
  explicit Placements(std::vector<Placed> all) : all_(std::move(all)) {}

  std::span<const Placed> all() const { return all_; }
  bool empty() const { return all_.empty(); }
  const Placed* find(int id) const;

  /// Returns the id of the new copy. If `mostCopies` are placed already, adds nothing and returns none.
  std::optional<int> add(std::string kind, protocol::WidgetFamily family, Place place);

  /// Puts a removed copy back at its position in the order. Returns its id: a new one if another copy has got the old
  /// one meanwhile. If `mostCopies` are placed already, adds nothing and returns none.
  std::optional<int> restore(Placed placed, std::size_t position);

  // These change nothing if no copy has the id.
  void remove(int id);
  void setKind(int id, std::string kind);
  void setFamily(int id, protocol::WidgetFamily family);
  void setPlace(int id, Place place);
  void setZoom(int id, int zoom);

  bool operator==(const Placements&) const = default;

 private:
  Placed* copy(int id);
  int freeId() const;

  std::vector<Placed> all_;
};

}  // namespace desktop
