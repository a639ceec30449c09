// The sd-bus functions in use, loaded when they are first needed: a program that never asks the Secret Service does
// not pay for the library's start, and runs where the library is missing.
#pragma once

#include <systemd/sd-bus.h>

namespace platform {

/// The functions of libsystemd, each under its own name without the common prefix.
struct SdBusLibrary {
  decltype(&::sd_bus_new) newBus;
  decltype(&::sd_bus_set_address) setAddress;
  decltype(&::sd_bus_set_bus_client) setBusClient;
  decltype(&::sd_bus_start) start;
  decltype(&::sd_bus_is_ready) isReady;
  decltype(&::sd_bus_process) process;
  decltype(&::sd_bus_wait) wait;
  decltype(&::sd_bus_close_unref) closeUnref;
  decltype(&::sd_bus_call_async) callAsync;
  decltype(&::sd_bus_slot_unref) slotUnref;
  decltype(&::sd_bus_message_new_method_call) newMethodCall;
  decltype(&::sd_bus_message_set_auto_start) setAutoStart;
  decltype(&::sd_bus_message_sensitive) sensitive;
  decltype(&::sd_bus_message_ref) messageRef;
  decltype(&::sd_bus_message_unref) messageUnref;
  decltype(&::sd_bus_message_get_error) getError;
  decltype(&::sd_bus_message_append) append;
  decltype(&::sd_bus_message_open_container) openContainer;
  decltype(&::sd_bus_message_close_container) closeContainer;
  decltype(&::sd_bus_message_enter_container) enterContainer;
  decltype(&::sd_bus_message_exit_container) exitContainer;
  decltype(&::sd_bus_message_read) read;
  decltype(&::sd_bus_message_read_array) readArray;
};

/// Null where the library or one of the functions is missing. Loaded once; it stays for the process's life.
const SdBusLibrary* sdBusLibrary();

}  // namespace platform
