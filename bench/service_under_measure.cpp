#include "service_under_measure.hpp"

#include <filesystem>
#include <stdexcept>
#include <utility>

namespace bench {
namespace {

constexpr const char* token = "token-pomiaru";
constexpr const char* paths[] = {"/api/moje/zadania", "/api/skrzynka", "/api/spotkania-planowane"};

std::string identifier(int number) {
  std::string digits = std::to_string(number);
  return "\"00112233-4455-6677-8899-" + std::string(12 - digits.size(), '0') + digits + "\"";
}

/// A list of `count` records as `record` writes them.
template <typename Record>
std::string list(int count, const Record& record) {
  std::string text = "[";
  for (int i = 0; i < count; ++i) text += (i == 0 ? "{\"id\":" : ",{\"id\":") + identifier(i) + "," + record(i) + "}";
  return text + "]";
}

std::map<std::string, std::string> aDay() {
  const auto task = [](int i) {
    return "\"numer\":" + std::to_string(100 + i) + R"(,"tytul":"Przygotować zestawienie kosztów","termin":)" +
           (i % 2 == 0 ? "null" : "\"2025-03-" + std::to_string(10 + i) + "\"") +
           R"(,"status":"otwarte","projekt_nazwa":"Pracownia")";
  };
  const auto meeting = [](int i) {
    return R"("tytul":"Narada","kiedy":"2030-03-14T12:0)" + std::to_string(i % 10) +
           R"(:00.123456+01:00","czas_trwania_min":30,"projekt_nazwa":null)";
  };
  const auto pending = [](int) { return std::string(R"("tytul":"Zgłoszenie z poczty")"); };
  return {
      {paths[0], list(20, task)}, {paths[1], "{\"zadania\":" + list(8, pending) + "}"}, {paths[2], list(6, meeting)}};
}

void storeItem(const support::TemporaryFolder& folder, const std::string& account, const std::string& text) {
  namespace fs = std::filesystem;
  fs::path level = folder.path("keychain");
  for (const char* next : {"", "QX4R2M7K9A.pl.ferol.vamba", "pl.ferol.vamba"}) {
    level /= next;
    fs::create_directories(level);
    fs::permissions(level, fs::perms::owner_all);
  }
  const std::string file = "keychain/QX4R2M7K9A.pl.ferol.vamba/pl.ferol.vamba/" + account;
  folder.write(file, text);
  fs::permissions(folder.path(file), fs::perms::owner_read | fs::perms::owner_write);
}

}  // namespace

ServiceUnderMeasure::ServiceUnderMeasure(support::NginxProtocol protocol)
    : server_({.protocol = protocol,
               .bodies = aDay(),
               .requiredAuthorization = std::string("Bearer ") + token,
               .directives = "    access_log off;\n"}) {
  storeItem(folder_, "token-urzadzenia", token);
  storeItem(folder_, "adres-api", server_.url("/api"));
}

// Nothing of the caller's environment is handed on: variables for trust or proxies would change what is measured.
Command ServiceUnderMeasure::extension(const std::string& program, const std::string& trustedFile) const {
  Command command{.words = {program},
                  .environment = {"PATH=/usr/bin:/bin", "HOME=" + folder_.path("home"), "LANG=C.UTF-8",
                                  "VAMBA_KEYCHAIN_DIR=" + folder_.path("keychain")}};
  if (!trustedFile.empty()) command.environment.push_back("SSL_CERT_FILE=" + trustedFile);
  return command;
}

Command ServiceUnderMeasure::client(const std::string& trustedFile) const {
  Command command{.words = {"/usr/bin/curl", "-q", "-Z", "--silent", "--fail", "-H",
                            std::string("Authorization: Bearer ") + token, "-H", "Accept: application/json"},
                  .environment = {"PATH=/usr/bin:/bin", "HOME=" + folder_.path("home"), "LANG=C.UTF-8"}};
  if (!trustedFile.empty()) command.words.insert(command.words.end(), {"--cacert", trustedFile});
  for (const char* path : paths) command.words.insert(command.words.end(), {"-o", "/dev/null", server_.url(path)});
  return command;
}

// Programs from the system's folders alone, in an environment as plain as the extension's.
Command ServiceUnderMeasure::peer(std::vector<std::string> words) const {
  return {.words = std::move(words),
          .environment = {"PATH=/usr/bin:/bin", "HOME=" + folder_.path("home"), "LANG=C.UTF-8"}};
}

Command ServiceUnderMeasure::clientAndJq() const {
  return peer({VAMBA_BENCH_PEERS "/day.sh", VAMBA_BENCH_PEERS "/day.jq", folder_.path(""), token, server_.url("/api")});
}

Command ServiceUnderMeasure::pythonScript() const {
  return peer({"/usr/bin/python3", VAMBA_BENCH_PEERS "/day.py", token, server_.url("/api")});
}

std::string ServiceUnderMeasure::timelineRequest() {
  return R"({"jsonrpc":"2.0","id":1,"method":"timeline","params":{"kind":"pl.ferol.vamba.widzety.dzien",)"
         R"("family":"systemLarge"}})"
         "\n";
}

void ServiceUnderMeasure::checkAnswer(const std::string& line) {
  if (line.find("\"doDecyzji\":8") == std::string::npos) throw std::runtime_error("not the service's day: " + line);
}

}  // namespace bench
