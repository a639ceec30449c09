#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include <nlohmann/json.hpp>

#include "base/json/json_text.hpp"
#include "host/command_line/programs.hpp"
#include "host/commands/commands.hpp"
#include "host/commands/output.hpp"
#include "host/commands/read_token.hpp"
#include "host/credentials/credential_store.hpp"
#include "host/credentials/service_address.hpp"
#include "host/extension/extension_client.hpp"
#include "host/extension/printable.hpp"

namespace host {
namespace {

std::unexpected<CommandFailure> failure(const std::string& why) {
  return std::unexpected(CommandFailure{exit_status::noAnswer, why});
}

/// A keychain folder for the length of a scope, in memory where there is such a place.
class TrialKeychain {
 public:
  TrialKeychain() {
    const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
    for (const std::string parent : {runtime == nullptr ? "" : runtime, "/dev/shm", "/tmp"}) {
      std::string name = parent + "/vamba-sign-in-XXXXXX";
      if (!parent.starts_with('/') || mkdtemp(name.data()) == nullptr) continue;
      folder_ = name;
      return;
    }
  }
  ~TrialKeychain() {
    std::error_code none;
    if (!folder_.empty()) std::filesystem::remove_all(folder_, none);
  }
  TrialKeychain(const TrialKeychain&) = delete;
  TrialKeychain& operator=(const TrialKeychain&) = delete;

  const std::filesystem::path& folder() const { return folder_; }
  std::expected<void, std::string> write(std::string_view account, std::string_view bytes) const {
    if (folder_.empty()) return std::unexpected("no private folder could be made");
    return writeItemFile(folder_, account, bytes);
  }
  bool holds(std::string_view account) const { return std::filesystem::exists(itemFile(folder_, account)); }

 private:
  std::filesystem::path folder_;
};

/// Has the extension load a day with this token. It deletes a token that the service refuses.
CommandResult tryOut(const std::filesystem::path& extension, const base::SecretText& token,
                     const std::optional<std::string>& address, SignalDescriptor& signals) {
  const TrialKeychain keychain;
  auto written = keychain.write(tokenAccount, token.text());
  if (written && address) written = keychain.write(addressAccount, *address);
  if (!written) return failure("the token could not be tried: " + written.error());
  ExtensionClient client({.program = extension,
                          .interruption = signals.descriptor(),
                          .environment = {"VAMBA_KEYCHAIN_DIR=" + keychain.folder().string()}});
  const protocol::WidgetFamily family = protocol::WidgetFamily::systemMedium;
  const auto widget = widgetFor(client, family);
  if (!widget) return std::unexpected(widget.error());
  const auto timeline = client.timeline(widget->kind, family);
  if (!timeline) return failure(timeline.error().message + "; nothing was stored");
  const auto& entry = timeline->entries.front();
  if (!keychain.holds(tokenAccount)) return failure("the service refused the token; nothing was stored");
  if (entry.holds == BoardHolds::day) return {};
  const auto parsed = base::parseJson(entry.json);
  const std::string sentence = parsed ? printable(parsed->value("blad", "")) : std::string();
  return failure("the token could not be tried: " + sentence + " Nothing was stored.");
}

std::string place(const std::optional<CredentialStore::Item>& item, const char* otherwise) {
  return item ? "in " + item->place : otherwise;
}

CommandResult showStatus() {
  CredentialStore store;
  const auto token = store.find(tokenAccount);
  if (!token) return failure(token.error());
  const auto address = store.find(addressAccount);
  if (!address) return failure(address.error());
  return print("token: " + place(*token, "none; sign in with \"vamba-host sign-in\"") +
               "\naddress: " + place(*address, "the built-in one") + "\n");
}

/// Stores the token, and the address where it is a new one.
std::expected<std::string, std::string> keep(CredentialStore& store, const base::SecretText& token,
                                             const std::optional<std::string>& newAddress) {
  if (newAddress) {
    // In this order, so that whatever fails in between no token is ever beside an address that it was not tried at.
    if (const auto removed = store.remove(tokenAccount); !removed) return std::unexpected(removed.error());
    if (auto stored = store.store(addressAccount, *newAddress); !stored) return stored;
  }
  return store.store(tokenAccount, token.text());
}

}  // namespace

CommandResult signIn(const CommandLine& line) {
  if (line.signInStatus) return showStatus();
  if (line.address && !serviceAddress(*line.address)) {
    return std::unexpected(CommandFailure{exit_status::wrongCommandLine,
                                          "--address: " + *line.address + " is not an http or https address"});
  }
  SignalDescriptor signals{SIGINT, SIGTERM, SIGHUP};
  const auto token = readToken(signals);
  if (!token) return std::unexpected(token.error());

  CredentialStore store;
  const auto known = store.find(addressAccount);
  if (!known) return failure(known.error());
  std::optional<std::string> keptAddress;
  if (const auto& item = *known) keptAddress = std::string(item->bytes.text());
  const auto newAddress = line.address == keptAddress ? std::nullopt : line.address;
  if (const auto tried = tryOut(extensionProgram(line), *token, newAddress ? newAddress : keptAddress, signals); !tried)
    return tried;

  const auto stored = keep(store, *token, newAddress);
  if (!stored) return failure(stored.error());
  return print("The service answered with your day. The token is kept in " + *stored + ".\n");
}

CommandResult signOut(const CommandLine&) {
  CredentialStore store;
  const auto token = store.remove(tokenAccount);
  const auto address = store.remove(addressAccount);
  if (!token) return failure(token.error());
  if (!address) return failure(address.error());
  if (!*token && !*address) return print("Nobody was signed in.\n");
  return print("Signed out: the token and the address are removed.\n");
}

}  // namespace host
