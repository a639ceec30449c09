#include "desktop/program/main_loop.hpp"

#include <csignal>
#include <memory>
#include <utility>

#include <glib-unix.h>

namespace desktop {
namespace {

using Task = std::function<void()>;

gboolean runTask(gpointer task) noexcept {
  (*static_cast<Task*>(task))();
  return G_SOURCE_REMOVE;
}

void dropTask(gpointer task) noexcept { delete static_cast<Task*>(task); }

Task* kept(Task task) { return std::make_unique<Task>(std::move(task)).release(); }

}  // namespace

void MainLoop::run() {
  const auto end = +[](gpointer loop) noexcept -> gboolean {
    g_main_loop_quit(static_cast<GMainLoop*>(loop));
    return G_SOURCE_CONTINUE;
  };
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) g_unix_signal_add(signal, end, loop_);
  g_main_loop_run(loop_);
}

void MainLoop::post(Task task) { g_idle_add_full(G_PRIORITY_DEFAULT, &runTask, kept(std::move(task)), &dropTask); }

void MainLoop::postAfter(absl::Duration time, Task task) {
  const auto milliseconds = static_cast<guint>(absl::ToInt64Milliseconds(time));
  g_timeout_add_full(G_PRIORITY_DEFAULT, milliseconds, &runTask, kept(std::move(task)), &dropTask);
}

void MainLoop::postWhenIdle(Task task) {
  g_idle_add_full(G_PRIORITY_DEFAULT_IDLE, &runTask, kept(std::move(task)), &dropTask);
}

}  // namespace desktop
