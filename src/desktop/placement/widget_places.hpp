// The widgets' places on the connected monitors, and the changes that a person makes to them. Knows nothing of windows.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "desktop/placement/arrangement.hpp"
#include "desktop/placement/snapping.hpp"

namespace desktop {

class WidgetPlaces {
 public:
  using Sizes = std::function<Size(protocol::WidgetFamily family)>;

  explicit WidgetPlaces(Placements placements, Sizes sizes)
      : placements_(std::move(placements)), sizes_(std::move(sizes)) {}

  const Placements& placements() const { return placements_; }
  std::span<const Placed> all() const { return placements_.all(); }
  bool empty() const { return placements_.empty(); }

  /// Where the copy is now, or null if it can't be shown.
  const Arranged* arranged(int id) const;
  const Monitor& monitorOf(const Arranged& copy) const { return monitors_[copy.monitor]; }

  /// The ids of the copies that are shown, see `readingOrder`.
  std::vector<int> readingOrder() const { return desktop::readingOrder(arranged_); }

  void setMonitors(std::vector<Monitor> monitors);
  /// Call it when the results of `sizes` have changed.
  void sizesChanged() { arrangeAll(); }

  /// Where the copy is placed if it is dropped at `wanted`: within its monitor, snapped if that is on, and covering no
  /// other copy.
  Point landing(int id, Point wanted, Snapping snapping) const;

  // Each returns whether the copy could be changed. `moveTo` and `step` return true even where the copy lands at the
  // place it had. A copy that would cover another goes to the nearest free place.
  bool add(const std::string& kind, protocol::WidgetFamily family);
  bool moveTo(int id, Point origin);
  bool step(int id, Direction direction);
  /// The corner by which the copy is placed stays where it is, and so does the monitor.
  bool resize(int id, protocol::WidgetFamily family);
  bool zoom(int id, int percent);
  bool remove(int id);
  /// See `Placements::restore`.
  std::optional<int> restore(const Placed& placed, std::size_t position);
  /// Sets the kind of copies that were placed before it was known.
  bool nameKind(const std::string& kind);

 private:
  void arrangeAll();
  bool reshape(int id, protocol::WidgetFamily family, int zoom);
  std::vector<Rect> others(int id) const;
  Point freeOrigin(int id, const Rect& rect, std::size_t monitor) const;
  void keepAt(int id, const Rect& rect, std::size_t monitor);

  Placements placements_;
  Sizes sizes_;
  std::vector<Monitor> monitors_;
  std::vector<Arranged> arranged_;
};

}  // namespace desktop
