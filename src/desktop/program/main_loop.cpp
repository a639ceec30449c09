#include "desktop/program/main_loop.hpp"

#include <csignal>
#include <memory>
#include <utility>

#include <glib-unix.h>

namespace desktop {
namespace {

using Task = std::function<void()>;

void postAt(int priority, Task task) {
  const auto run = +[](gpointer posted) -> gboolean {
    (*static_cast<Task*>(posted))();
    return G_SOURCE_REMOVE;
  };
  const auto drop = +[](gpointer posted) { delete static_cast<Task*>(posted); };
  g_idle_add_full(priority, run, std::make_unique<Task>(std::move(task)).release(), drop);
}

}  // namespace

void MainLoop::run() {
  const auto end = +[](gpointer loop) -> gboolean {
    g_main_loop_quit(static_cast<GMainLoop*>(loop));
    return G_SOURCE_CONTINUE;
  };
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) g_unix_signal_add(signal, end, loop_);
  g_main_loop_run(loop_);
}

void MainLoop::post(Task task) { postAt(G_PRIORITY_DEFAULT, std::move(task)); }

void MainLoop::postWhenIdle(Task task) { postAt(G_PRIORITY_DEFAULT_IDLE, std::move(task)); }

}  // namespace desktop
