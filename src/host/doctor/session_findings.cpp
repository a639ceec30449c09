#include "host/doctor/session_findings.hpp"

#include <chrono>

#include <arpa/inet.h>

#include "base/tasks/deadline.hpp"
#include "host/credentials/service_address.hpp"
#include "platform/keychain/keychain_environment.hpp"
#include "platform/keychain/session_bus.hpp"

namespace host {
namespace {

using platform::BusFailure;
using platform::BusResult;
using platform::SessionBus;

constexpr auto patienceWithTheBus = std::chrono::seconds(3);

constexpr const char* signInAdvice = "Sign in with \"vamba-host sign-in\".";

constexpr const char* busName = "org.freedesktop.DBus";

BusResult<bool> hasOwner(SessionBus& bus, const char* name, const base::Deadline& deadline) {
  const auto answer = bus.call(
      {busName, "/org/freedesktop/DBus", busName, "NameHasOwner"},
      [name](sd_bus_message* call) { return sd_bus_message_append(call, "s", name); }, deadline);
  if (!answer) return std::unexpected(answer.error());
  int owned = 0;
  if (sd_bus_message_read(answer->get(), "b", &owned) < 0) return std::unexpected(BusFailure{});
  return owned != 0;
}

bool isThisMachine(const std::string& host) {
  in_addr address{};
  const bool isLoopback = inet_pton(AF_INET, host.c_str(), &address) == 1 && ntohl(address.s_addr) >> 24 == 127;
  return isLoopback || host == "localhost" || host == "::1";
}

/// The host in a URL: an IPv6 address is in brackets there.
std::string inUrl(const std::string& host) { return host.find(':') == std::string::npos ? host : "[" + host + "]"; }

}  // namespace

Finding keychainFinding(CredentialStore& store) {
  const auto folder = store.folder();
  if (!folder) {
    if (const auto service = store.secretService(); service && !*service) {
      return {.subject = "keychain",
              .verdict = Verdict::fault,
              .what = "there is no Secret Service, and neither XDG_DATA_HOME nor HOME names a folder",
              .advice = "Set HOME."};
    }
    return {.subject = "keychain", .what = "the Secret Service"};
  }
  return {.subject = "keychain",
          .what = "the folder " + folder->path.string() + (folder->alone ? ", which VAMBA_KEYCHAIN_DIR names" : "")};
}

Finding tokenFinding(CredentialStore& store) {
  const auto token = store.find(tokenAccount);
  if (!token) {
    return {.subject = "token", .verdict = Verdict::fault, .what = "it cannot be read: " + token.error()};
  }
  Finding finding{.subject = "token", .verdict = Verdict::fault, .what = "none is kept", .advice = signInAdvice};
  if (const auto& kept = *token) {
    if (!kept->bytes.empty()) return {.subject = "token", .what = "kept in " + kept->place};
    finding.what = "the one that is kept in " + kept->place + " is empty";
  }
  return finding;
}

AddressFinding addressFinding(CredentialStore& store) {
  Finding finding{.subject = "address"};
  const auto kept = store.find(addressAccount);
  if (!kept) {
    finding.verdict = Verdict::fault;
    finding.what = "it cannot be read: " + kept.error();
    return {finding, true};
  }
  std::string address = builtInAddress;
  std::string place;
  if (const auto& item = *kept) {
    address = item->bytes.text();
    place = item->place;
  }
  const auto url = serviceAddress(address);
  if (!url) {
    finding.verdict = Verdict::fault;
    finding.what = "the one that is kept in " + place + " is not an http or https address";
    finding.advice = "Give the right one with \"vamba-host sign-in --address URL\".";
    return {finding, false};
  }
  const std::string scheme = url->scheme().value_or("");
  const std::string host = url->host().value_or("");
  const std::string port = url->port().value_or("");
  const bool encrypted = scheme == "https";
  finding.what =
      scheme + "://" + inUrl(host) + (port.empty() ? "" : ":" + port) + (place.empty() ? ", the built-in one" : "");
  if (!encrypted && !isThisMachine(host)) {
    finding.verdict = Verdict::note;
    finding.what += "; the token crosses the network unencrypted";
    finding.advice = "Use an address that begins with https.";
  }
  return {finding, encrypted};
}

Finding secretServiceFinding(CredentialStore& store) {
  Finding finding{.subject = "secret service"};
  const auto state = store.secretService();
  if (!state) {
    finding.verdict = Verdict::note;
    finding.what = state.error();
  } else {
    finding.what = *state ? "answers, and its keyring is unlocked" : "the session has none";
    if (!*state) {
      finding.verdict = Verdict::note;
      finding.advice = "Install gnome-keyring or another one to keep the token there; private files do as well.";
    }
  }
  if (const auto folder = itemFolder(); folder && folder->alone) {
    finding.what += "; it is not used, since VAMBA_KEYCHAIN_DIR is set";
    finding.advice.clear();
  }
  return finding;
}

Finding portalFinding() {
  constexpr const char* portal = "org.freedesktop.portal.Desktop";
  Finding finding{.subject = "portal", .verdict = Verdict::note};
  const auto deadline = base::Deadline::after(patienceWithTheBus);
  const auto address = platform::sessionBusAddress();
  auto bus = address ? SessionBus::connect(*address, deadline)
                     : BusResult<SessionBus>(std::unexpected(BusFailure{BusFailure::Kind::absent, {}}));
  if (!bus) {
    finding.what = "there is no session bus; boards on the desktop follow the toolkit's settings";
    return finding;
  }
  const auto running = hasOwner(*bus, portal, deadline);
  if (!running || !*running) {
    finding.what = "none is running; boards on the desktop follow the toolkit's settings";
    finding.advice =
        "Install xdg-desktop-portal and a backend for your desktop to follow dark mode and the accent colour.";
    return finding;
  }
  const auto answer = bus->call(
      {portal, "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings", "Read"},
      [](sd_bus_message* call) {
        return sd_bus_message_append(call, "ss", "org.freedesktop.appearance", "color-scheme");
      },
      deadline);
  if (!answer) {
    finding.what = answer.error().kind == BusFailure::Kind::timedOut
                       ? "it does not answer; boards on the desktop follow the toolkit's settings"
                       : "it does not tell light from dark; boards on the desktop follow the toolkit's settings";
    finding.advice = "Install a backend of xdg-desktop-portal that suits your desktop.";
    return finding;
  }
  return {.subject = "portal", .what = "answers; boards on the desktop follow its light or dark setting"};
}

}  // namespace host
