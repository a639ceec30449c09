#include "desktop/placement/placement_saver.hpp"

#include <utility>

namespace desktop {
namespace {

constexpr std::chrono::milliseconds rest{500};

}  // namespace

PlacementSaver::PlacementSaver(PlacementStore store, std::function<void(const std::string&)> failed)
    : store_(std::move(store)), failed_(std::move(failed)), thread_([this] { run(); }) {}

PlacementSaver::~PlacementSaver() {
  {
    const std::scoped_lock lock(mutex_);
    ending_ = true;
  }
  changed_.notify_one();
}

void PlacementSaver::save(const DesktopState& state) {
  {
    const std::scoped_lock lock(mutex_);
    if ((unsaved_ ? unsaved_ : saved_) == state) return;
    unsaved_ = state;
    due_ = std::chrono::steady_clock::now() + rest;
  }
  changed_.notify_one();
}

void PlacementSaver::run() {
  std::unique_lock lock(mutex_);
  while (true) {
    changed_.wait(lock, [this] { return ending_ || unsaved_.has_value(); });
    // Each further change moves the due time.
    while (!ending_ && std::chrono::steady_clock::now() < due_) changed_.wait_until(lock, due_);
    if (const auto state = std::exchange(unsaved_, std::nullopt)) {
      saved_ = state;
      lock.unlock();
      const auto saved = store_.save(*state);
      if (!saved) failed_(saved.error());
      lock.lock();
      if (!saved) saved_.reset();
    } else if (ending_) {
      return;
    }
  }
}

}  // namespace desktop
