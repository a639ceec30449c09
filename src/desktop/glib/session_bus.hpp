// The session bus, and connections of one's own to it. The connection that GLib shares ends the process when the bus
// ends.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <gio/gio.h>

#include "desktop/glib/gobject.hpp"

namespace desktop {

/// The address of the session bus that the environment names; none if there is no bus. Never starts one.
std::optional<std::string> sessionBusToAsk();

/// Runs on the thread's default main context.
class PrivateBus {
 public:
  /// Begins to connect, without blocking. `connected` is called once, never from within the constructor, and never if
  /// the bus can't be reached.
  PrivateBus(const std::string& address, std::function<void()> connected);
  /// Ends the subscriptions, cancels `ended` and closes the connection.
  ~PrivateBus();
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  /// Null until `connected` is called.
  GDBusConnection* connection() const { return connection_.get(); }

  /// Cancelled when the object is destroyed, for calls over the connection. An answer that arrives afterwards can tell
  /// by a reference of its own.
  GCancellable* ended() const { return ended_.get(); }

  struct Signal {
    const char* sender;
    const char* path;
    const char* interface;
    const char* name;
    const char* firstArgument = nullptr;  ///< only with this text; null for any
  };
  /// To be called after `connected`. `self` is passed to `heard`.
  void subscribe(const Signal& signal, GDBusSignalCallback heard, gpointer self);

 private:
  struct Attempt;

  static void answered(GObject* source, GAsyncResult* result, gpointer data) noexcept;

  std::function<void()> connected_;
  OwnedObject<GCancellable> ended_;
  OwnedObject<GDBusConnection> connection_;
  std::vector<guint> subscriptions_;
};

}  // namespace desktop
