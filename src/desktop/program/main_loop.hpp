// The main thread's loop: what runs on it, and how others reach it.
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

  /// Until `quit`, SIGTERM, SIGINT or SIGHUP.
  void run();
  void quit() { g_main_loop_quit(loop_); }

  /// Runs the task on the main thread, from any thread, soon and in order: before windows are painted. What is posted
  /// when the loop has ended never runs.
  static void post(std::function<void()> task);

  /// Runs the task on the main thread, once, when the time has passed.
  static void postAfter(absl::Duration time, std::function<void()> task);

  /// Runs the task on the main thread when nothing else is to do.
  static void postWhenIdle(std::function<void()> task);

 private:
  GMainLoop* loop_;
};

}  // namespace desktop
