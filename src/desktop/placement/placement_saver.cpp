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
    if (wanted_ == state) return;
    wanted_ = state;
    unsaved_ = true;
    due_ = std::chrono::steady_clock::now() + rest;
  }
  changed_.notify_one();
}

void PlacementSaver::run() {
  std::unique_lock lock(mutex_);
  while (true) {
    changed_.wait(lock, [this] { return ending_ || unsaved_; });
    // Each further change moves the due time.
    while (!ending_ && std::chrono::steady_clock::now() < due_) changed_.wait_until(lock, due_);
    if (std::exchange(unsaved_, false)) {
      const DesktopState state = *wanted_;
      lock.unlock();
      const auto saved = store_.save(state);
      if (!saved) failed_(saved.error());
      lock.lock();
      if (!saved && !unsaved_) wanted_.reset();
    } else if (ending_) {
      return;
    }
  }
}

}  // namespace desktop
