// What the tests of the built extension share: a person's private folders, their keychain, the process that serves
// them, and the service it is signed in to. Everything is reached as a stranger would: environment, files, lines.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "support/extension_under_test.hpp"
#include "support/sanitized.hpp"
#include "support/scripted_http_server.hpp"
#include "support/temporary_folder.hpp"

namespace end_to_end {

using nlohmann::json;
using std::chrono_literals::operator""s;
using std::chrono_literals::operator""ms;

inline const std::string kind = "pl.ferol.vamba.widzety.dzien";
inline const std::string tasksTarget = "/api/moje/zadania";
inline const std::string inboxTarget = "/api/skrzynka";
inline const std::string meetingsTarget = "/api/spotkania-planowane";

inline const std::string signIn = "Zaloguj się w aplikacji Vamba.";
inline const std::string noConnection = "Brak połączenia z Vambą.";
inline const std::string notRefreshed = "Nie udało się odświeżyć.";
inline const std::string expired = "Poświadczenie wygasło — zaloguj się ponownie.";
inline std::string serverError(int status) { return "Serwer odpowiedział błędem " + std::to_string(status) + "."; }

/// A folder of keychain items in their documented places.
class ItemFolder {
 public:
  explicit ItemFolder(std::filesystem::path root) : root_(std::move(root)) {}

  void store(const std::string& account, const std::string& bytes) const;
  bool holds(const std::string& account) const { return std::filesystem::exists(fileOf(account)); }
  std::filesystem::path fileOf(const std::string& account) const;

 private:
  std::filesystem::path root_;
};

class ExtensionTest : public testing::Test {
 protected:
  ExtensionTest();
  /// The process ends well, and the person's folders are as empty as they were: the extension writes nothing.
  void TearDown() override;

  /// The process, started at the first use with `environment` as it is then.
  support::ExtensionUnderTest& extension();
  std::unique_ptr<support::ExtensionUnderTest> startAnother() const;
  /// From here on `extension()` is a new process.
  void restart() { extension_.reset(); }

  void signInTo(const std::string& address, const std::string& token = "tajne-7") const;

  /// The timeline's one entry; fails the test where the answer is none.
  json loadEntry();
  /// The sentence on the board; empty where there is none.
  std::string loadSentence() { return loadEntry().value("blad", std::string()); }
  json render(const json& entry, const std::string& family = "systemLarge");

  static json boardParams(const std::string& family = "systemMedium") { return {{"kind", kind}, {"family", family}}; }

  /// HOME, the XDG folders and TMPDIR are below it.
  std::filesystem::path privateFolder() const { return folder_.path("private"); }

  support::TemporaryFolder folder_;
  ItemFolder items{folder_.path("keychain")};
  support::ExtensionUnderTest::Environment environment;

 private:
  std::unique_ptr<support::ExtensionUnderTest> extension_;
};

/// Signed in to a scripted service with an empty day.
class ServiceTest : public ExtensionTest {
 protected:
  ServiceTest();

  /// One script for every request.
  void everyAnswer(std::vector<support::Step> steps);

  support::ScriptedHttpServer service;
};

/// A task and a meeting as the service writes them.
json serverTask(int number, const std::string& title, const std::optional<std::string>& due,
                const std::string& status = "otwarte");
json serverMeeting(int number, const std::string& title, const std::string& start);

/// Every text of a view in reading order: verbatim ones as they are, keys with their arguments in place.
std::vector<std::string> textsOf(const json& node);
/// One named field of each element.
std::vector<std::string> fieldOf(const json& records, const std::string& name);

}  // namespace end_to_end
