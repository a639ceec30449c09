#include "end_to_end/extension_fixture.hpp"

#include <array>
#include <cstdio>
#include <fstream>

namespace end_to_end {

namespace fs = std::filesystem;

namespace {

std::string uuidOf(int number) {
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "00000000-0000-4000-8000-%012d", number);
  return text.data();
}

void makePrivate(const fs::path& folder) {
  fs::create_directory(folder);
  fs::permissions(folder, fs::perms::owner_all);
}

}  // namespace

fs::path ItemFolder::fileOf(const std::string& account) const {
  return root_ / "QX4R2M7K9A.pl.ferol.vamba" / "pl.ferol.vamba" / account;
}

void ItemFolder::store(const std::string& account, const std::string& bytes) const {
  const auto file = fileOf(account);
  for (const auto& folder : {root_.parent_path(), root_, file.parent_path().parent_path(), file.parent_path()}) {
    fs::create_directories(folder);
    fs::permissions(folder, fs::perms::owner_all);
  }
  std::ofstream(file, std::ios::binary) << bytes;
  fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
}

ExtensionTest::ExtensionTest() {
  makePrivate(privateFolder());
  environment = {{"LANGUAGE", "pl"}, {"TZ", "Europe/Warsaw"}, {"VAMBA_KEYCHAIN_DIR", folder_.path("keychain")}};
  for (const char* name :
       {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR", "TMPDIR"}) {
    makePrivate(privateFolder() / name);
    environment[name] = privateFolder() / name;
  }
}

void ExtensionTest::TearDown() {
  // A sanitizer tells what it found by the status.
  if (extension_ && !extension_->exitStatus(0s)) {
    extension_->closeInput();
    EXPECT_EQ(extension_->exitStatus(), 0) << extension_->diagnostics();
  }
  for (const auto& each : fs::recursive_directory_iterator(privateFolder())) {
    EXPECT_TRUE(each.is_directory() && each.path().parent_path() == privateFolder()) << each.path() << " was written";
  }
}

std::unique_ptr<support::ExtensionUnderTest> ExtensionTest::startAnother() const {
  return std::make_unique<support::ExtensionUnderTest>(VAMBA_EXTENSION, environment);
}

support::ExtensionUnderTest& ExtensionTest::extension() {
  if (!extension_) extension_ = startAnother();
  return *extension_;
}

void ExtensionTest::signInTo(const std::string& address, const std::string& token) const {
  items.store("token-urzadzenia", token);
  items.store("adres-api", address);
}

json ExtensionTest::loadEntry() {
  const json answer = extension().call("timeline", boardParams());
  if (!answer.is_object() || !answer.contains("result") || answer["result"]["entries"].size() != 1) {
    ADD_FAILURE() << "no timeline of one entry: " << answer << "\n" << extension().diagnostics();
    return json::object();
  }
  return answer["result"]["entries"][0];
}

json ExtensionTest::render(const json& entry, const std::string& family) {
  const json answer = extension().call("render", {{"kind", kind}, {"family", family}, {"entry", entry}});
  if (!answer.is_object() || !answer.contains("result")) {
    ADD_FAILURE() << "no view: " << answer;
    return json::object();
  }
  return answer["result"]["view"];
}

ServiceTest::ServiceTest() {
  signInTo(service.url("/api"));
  service.answer(tasksTarget, {.body = "[]"});
  service.answer(inboxTarget, {.body = R"({"zadania": []})"});
  service.answer(meetingsTarget, {.body = "[]"});
}

void ServiceTest::everyAnswer(std::vector<support::Step> steps) {
  for (const auto& target : {tasksTarget, inboxTarget, meetingsTarget}) service.script(target, steps);
}

json serverTask(int number, const std::string& title, const std::optional<std::string>& due,
                const std::string& status) {
  json task{
      {"id", uuidOf(number)}, {"numer", number}, {"tytul", title}, {"status", status}, {"projekt_nazwa", "Pracownia"}};
  if (due) task["termin"] = *due;
  return task;
}

json serverMeeting(int number, const std::string& title, const std::string& start) {
  return {
      {"id", uuidOf(number)}, {"tytul", title}, {"kiedy", start}, {"czas_trwania_min", 30}, {"projekt_nazwa", nullptr}};
}

std::vector<std::string> textsOf(const json& node) {
  std::vector<std::string> texts;
  if (node.contains("text")) texts.push_back(node["text"]);
  if (node.contains("key")) {
    std::string text = node["key"];
    for (const auto& argument : node["arguments"]) {
      const auto at = text.find("%lld");
      if (at != std::string::npos) text.replace(at, 4, argument.dump());
    }
    texts.push_back(text);
  }
  if (node.contains("children")) {
    for (const auto& child : node["children"]) {
      for (auto& text : textsOf(child)) texts.push_back(std::move(text));
    }
  }
  return texts;
}

std::vector<std::string> fieldOf(const json& records, const std::string& name) {
  std::vector<std::string> fields;
  for (const auto& record : records) fields.push_back(record.value(name, std::string("absent")));
  return fields;
}

}  // namespace end_to_end
