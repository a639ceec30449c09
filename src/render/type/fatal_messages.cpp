#include "render/type/fatal_messages.hpp"

#include <cstdlib>
#include <cstring>
#include <initializer_list>

#include <pango/pangocairo.h>  // brings GLib
#include <unistd.h>

namespace render {

void endWithStatusOnFatalMessages(const char* program) {
  static const char* beginning = nullptr;
  beginning = program;
  const auto handle = [](const gchar* domain, GLogLevelFlags level, const gchar* message, gpointer data) {
    if ((level & G_LOG_FLAG_FATAL) == 0) return g_log_default_handler(domain, level, message, data);
    // Nothing here may allocate.
    for (const char* const text : {beginning, ": ", message, "\n"}) {
      [[maybe_unused]] const auto ignored = ::write(STDERR_FILENO, text, std::strlen(text));
    }
    _exit(EXIT_FAILURE);
  };
  g_log_set_default_handler(handle, nullptr);
}

}  // namespace render
