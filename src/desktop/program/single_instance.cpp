#include "desktop/program/single_instance.hpp"

#include "desktop/appearance/appearance_portal.hpp"

namespace desktop {
namespace {

constexpr const char* focusAction = "focus";

}  // namespace

SingleInstance::SingleInstance(std::function<void(Request)> calledAgain) : calledAgain_(std::move(calledAgain)) {
  if (!sessionBusToAsk()) return;
  application_.reset(g_application_new("pl.ferol.vamba.Desktop", G_APPLICATION_DEFAULT_FLAGS));
  connect<&SingleInstance::activated>(application_.get(), "activate", this);
  const OwnedObject<GSimpleAction> focus(g_simple_action_new(focusAction, nullptr));
  connect<&SingleInstance::focusAsked>(focus.get(), "activate", this);
  g_action_map_add_action(G_ACTION_MAP(application_.get()), G_ACTION(focus.get()));
}

bool SingleInstance::claim(Request request) {
  // A bus that can't be reached is treated like none.
  if (!application_ || g_application_register(application_.get(), nullptr, nullptr) == FALSE) return true;
  GDBusConnection* const bus = g_application_get_dbus_connection(application_.get());
  // By default, the process would end when the bus does.
  if (bus != nullptr) g_dbus_connection_set_exit_on_close(bus, FALSE);
  if (g_application_get_is_remote(application_.get()) == FALSE) return true;
  if (request == Request::focus) {
    g_action_group_activate_action(G_ACTION_GROUP(application_.get()), focusAction, nullptr);
  } else {
    g_application_activate(application_.get());
  }
  g_dbus_connection_flush_sync(bus, nullptr, nullptr);
  return false;
}

void SingleInstance::activated() { calledAgain_(Request::gallery); }

void SingleInstance::focusAsked(GVariant* /*parameter*/) { calledAgain_(Request::focus); }

}  // namespace desktop
