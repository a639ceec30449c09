// The main thread's event loop, and how other threads run something on it.
#pragma once

#include <functional>

#include <absl/time/time.h>
#include <glib.h>

namespace desktop {

class MainLoop {
 public:
  MainLoop() : loop_(g_main_loop_new(nullptr, FALSE)) {}
  ~MainLoop() { g_main_loop_unref(loop_); }
  MainLoop(const MainLoop&) = delete;
  MainLoop& operator=(const MainLoop&) = delete;

  /// Returns after `quit`, SIGTERM, SIGINT or SIGHUP.
  void run();
  void quit() { g_main_loop_quit(loop_); }

  /// Runs the task on the main thread soon, before windows are painted. Can be called from any thread. Tasks run in the
  /// order in which they were posted; those that are posted after the loop has ended never run.
  static void post(std::function<void()> task);

  /// Runs the task once on the main thread, after this time.
  static void postAfter(absl::Duration time, std::function<void()> task);

  /// Runs the task on the main thread when there is nothing else to do.
  static void postWhenIdle(std::function<void()> task);

 private:
  GMainLoop* loop_;
};

}  // namespace desktop
