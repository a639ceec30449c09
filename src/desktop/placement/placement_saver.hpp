// Saves placements on a thread of its own, so that the main thread never waits for a disk: once, half a second after
// the last change, and at the end if something is not saved yet.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "desktop/placement/placement_store.hpp"

namespace desktop {

class PlacementSaver {
 public:
  /// `failed` is called on the saver's thread with a sentence for a person.
  PlacementSaver(PlacementStore store, std::function<void(const std::string&)> failed);
  /// Saves what is not saved yet.
  ~PlacementSaver();
  PlacementSaver(const PlacementSaver&) = delete;
  PlacementSaver& operator=(const PlacementSaver&) = delete;

  /// Writes nothing if the state equals the one that was saved last or is about to be.
  void save(const DesktopState& state);

 private:
  void run();

  PlacementStore store_;
  std::function<void(const std::string&)> failed_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::optional<DesktopState> unsaved_;
  std::optional<DesktopState> saved_;  ///< or being saved; none if that has failed
  std::chrono::steady_clock::time_point due_;
  bool ending_ = false;
  std::jthread thread_;  // last, since it uses the other members
};

}  // namespace desktop
