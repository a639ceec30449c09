// The fixture of the tests on X11 with the real widget, which is signed in to the test's own service.
#pragma once

#include "desktop/end_to_end/x11_fixture.hpp"
#include "end_to_end/extension_fixture.hpp"
#include "support/scripted_http_server.hpp"

namespace end_to_end {

/// The widget is signed in, and the day is empty until a test changes it.
class ServiceOnX11 : public OnX11 {
 protected:
  ServiceOnX11() {
    items_.store("token-urzadzenia", "tajne-7");
    items_.store("adres-api", service_.url("/api"));
    service_.answer(tasksTarget, {.body = "[]"});
    service_.answer(inboxTarget, {.body = R"({"zadania": []})"});
    service_.answer(meetingsTarget, {.body = "[]"});
    settings_ = {.extension = VAMBA_EXTENSION, .variables = {{"VAMBA_KEYCHAIN_DIR", folder_.path("keychain")}}};
  }

  support::TemporaryFolder folder_;
  ItemFolder items_{folder_.path("keychain")};
  support::ScriptedHttpServer service_;
};

}  // namespace end_to_end
