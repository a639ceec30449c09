// The service as the widget sees it, on a scripted server: three resources that answer an ordinary day until a test
// says otherwise, and a keychain that is signed in there.
#pragma once

#include <string>

#include "support/memory_keychain.hpp"
#include "support/scripted_http_server.hpp"

namespace support {

struct ServiceStandIn {
  ScriptedHttpServer server;
  MemoryKeychain keychain;

  explicit ServiceStandIn(const std::string& token = "tajne-7") {
    keychain.store("token-urzadzenia", token);
    keychain.store("adres-api", server.url("/api"));
    tasks("[]");
    inbox(R"({"zadania": []})");
    meetings("[]");
  }

  void tasks(const std::string& body) { server.answer("/api/moje/zadania", {.body = body}); }
  void inbox(const std::string& body) { server.answer("/api/skrzynka", {.body = body}); }
  void meetings(const std::string& body) { server.answer("/api/spotkania-planowane", {.body = body}); }
};

}  // namespace support
