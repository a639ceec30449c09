// An extension that behaves as FAKE_EXTENSION tells: well by default, else in one of the ways in which a process can
// fail its host. FAKE_EXTENSION_STARTS names a file to which each process it consists of adds its number,
// FAKE_EXTENSION_REQUESTS one to which it adds what it is asked. FAKE_EXTENSION_TITLE is what its timelines say,
// FAKE_EXTENSION_SENTENCE what they say instead of a day, FAKE_EXTENSION_RELOAD_SECONDS after how many seconds they ask
// to be loaded again. FAKE_EXTENSION_NOW is the time that it takes it to be, in seconds since 1970.
// FAKE_EXTENSION_TODAY is added to each view. FAKE_EXTENSION_OPENS is what a click on its widget opens, as JSON. While
// there is a file FAKE_EXTENSION_HELD, no view is answered.
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <map>
#include <string>

#include <absl/time/clock.h>
#include <nlohmann/json.hpp>
#include <sys/resource.h>
#include <unistd.h>

#include "base/text/instant.hpp"
#include "protocol/json_rpc/line_reader.hpp"
#include "protocol/json_rpc/line_writer.hpp"
#include "protocol/json_rpc/message.hpp"

namespace {

using nlohmann::json;
using protocol::json_rpc::LineReader;
using protocol::json_rpc::LineWriter;
using protocol::json_rpc::Request;
using protocol::json_rpc::Response;

std::string environment(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

void tellProcess() {
  const std::string file = environment("FAKE_EXTENSION_STARTS");
  if (!file.empty()) std::ofstream(file, std::ios::app) << ::getpid() << std::endl;
}

void tellRequest(const std::string& method) {
  const std::string file = environment("FAKE_EXTENSION_REQUESTS");
  if (!file.empty()) std::ofstream(file, std::ios::app) << method + "\n" << std::flush;
}

absl::Time now() {
  const std::string told = environment("FAKE_EXTENSION_NOW");
  return told.empty() ? absl::Now() : absl::FromUnixSeconds(std::atoll(told.c_str()));
}

json entry(const std::string& title) { return {{"date", base::formatInstant(now())}, {"tytul", title}}; }

json resultOf(const Request& request) {
  const std::string reload = environment("FAKE_EXTENSION_RELOAD_SECONDS");
  const int seconds = reload.empty() ? 900 : std::atoi(reload.c_str());
  if (request.method == "widgets") {
    json widget{{"kind", "fake"},
                {"displayName", "Fake"},
                {"description", "A widget for tests"},
                {"families", {"systemSmall", "systemMedium", "systemLarge"}}};
    if (const std::string opens = environment("FAKE_EXTENSION_OPENS"); !opens.empty()) {
      widget["opens"] = json::parse(opens);
    }
    return json::array({std::move(widget)});
  }
  if (request.method == "timeline") {
    const std::string title = environment("FAKE_EXTENSION_TITLE");
    json told = entry(title.empty() ? "timeline" : title);
    if (const std::string sentence = environment("FAKE_EXTENSION_SENTENCE"); !sentence.empty()) told["blad"] = sentence;
    return {{"entries", {told}},
            {"policy", {{"type", "after"}, {"date", base::formatInstant(now() + absl::Seconds(seconds))}}}};
  }
  if (request.method == "render") {
    while (::access(environment("FAKE_EXTENSION_HELD").c_str(), F_OK) == 0) ::usleep(1000);
    std::string title = request.params["entry"].value("tytul", "") + " " + request.params.value("family", "");
    if (const std::string today = environment("FAKE_EXTENSION_TODAY"); !today.empty()) title += " on " + today;
    return {{"view", {{"type", "text"}, {"text", title}, {"containerBackground", "background"}}}};
  }
  return {{"entry", entry(request.method)}};
}

class Fake {
 public:
  int run() {
    const std::string behaviour = environment("FAKE_EXTENSION");
    if (const auto atStart = startBehaviours().find(behaviour); atStart != startBehaviours().end()) atStart->second();
    while (true) {
      const auto read = reader_.next();
      if (read.status == LineReader::Status::tooLong) continue;
      if (read.status != LineReader::Status::line) break;
      auto request = protocol::json_rpc::parseRequest(read.text);
      if (!request) {
        write(protocol::json_rpc::toLine(request.error()));
        continue;
      }
      tellRequest(request->method);
      const auto onRequest = requestBehaviours().find(behaviour);
      onRequest == requestBehaviours().end() ? answer(*request) : onRequest->second(*this, *request);
    }
    if (behaviour == "ignore the end") hang();
    return 0;
  }

 private:
  using OnRequest = std::function<void(Fake&, const Request&)>;

  static void hang() {
    while (true) ::pause();
  }

  void write(const std::string& line) { static_cast<void>(writer_.write(line)); }
  void answer(const Request& request) { answer(request, resultOf(request)); }
  void answer(const Request& request, json result) {
    write(protocol::json_rpc::toLine(Response{.id = request.id, .outcome = std::move(result)}));
  }
  static void writeRaw(std::string_view bytes) {
    while (!bytes.empty()) {
      const ssize_t count = ::write(STDOUT_FILENO, bytes.data(), bytes.size());
      if (count <= 0) ::_exit(9);
      bytes.remove_prefix(static_cast<std::size_t>(count));
    }
  }
  // A grandchild that keeps every stream open and ends for nobody but a kill.
  static void startGrandchild() {
    if (::fork() != 0) return;
    std::signal(SIGTERM, SIG_IGN);
    tellProcess();
    hang();
  }
  static void waitForGrandchild() {
    // Its number is the second line of the file.
    const std::string file = environment("FAKE_EXTENSION_STARTS");
    for (std::string line; true;) {
      std::ifstream lines(file);
      if (std::getline(lines, line) && std::getline(lines, line)) return;
      ::usleep(1000);
    }
  }

  static const std::map<std::string, std::function<void()>>& startBehaviours() {
    static const std::map<std::string, std::function<void()>> behaviours{
        {"exit 3", [] { ::_exit(3); }},
        {"explain and exit",
         [] {
           static_cast<void>(!::write(STDERR_FILENO, "no \x1b[31mday\n", 12));
           ::_exit(1);
         }},
        {"stop reading", [] { hang(); }},
        {"answer before reading",
         [] {
           writeRaw(R"({"jsonrpc":"2.0","id":1,"result":{}})"
                    "\n");
           hang();
         }},
        {"hang and ignore signals",
         [] {
           std::signal(SIGTERM, SIG_IGN);
           std::signal(SIGHUP, SIG_IGN);
           hang();
         }},
        {"close output",
         [] {
           ::close(STDOUT_FILENO);
           hang();
         }},
    };
    return behaviours;
  }

  static const std::map<std::string, OnRequest>& requestBehaviours() {
    static const std::map<std::string, OnRequest> behaviours{
        {"die mid-line",
         [](Fake&, const Request&) {
           writeRaw(R"({"jsonrpc":"2.0","id":1,"res)");
           ::kill(::getpid(), SIGKILL);
         }},
        {"crash",
         [](Fake&, const Request&) {
           const rlimit noCore{.rlim_cur = 0, .rlim_max = 0};
           ::setrlimit(RLIMIT_CORE, &noCore);
           std::signal(SIGSEGV, SIG_DFL);
           ::raise(SIGSEGV);
         }},
        {"hang", [](Fake&, const Request&) { hang(); }},
        {"stop in render",
         [](Fake& fake, const Request& request) {
           if (request.method == "render") ::raise(SIGSTOP);
           fake.answer(request);
         }},
        {"spin",
         [](Fake&, const Request&) {
           for (volatile bool on = true; on;) {
           }
         }},
        {"garbage", [](Fake& fake, const Request&) { fake.write("Segmentation \x1b[1mfault"); }},
        {"flood",
         [](Fake&, const Request&) {
           const std::string block(1 << 16, 'x');
           while (true) writeRaw(block);
         }},
        {"many values",
         [](Fake& fake, const Request&) {
           std::string values;
           for (int i = 0; i < 2'000'000; ++i) values += "0,";
           fake.write(R"({"jsonrpc":"2.0","id":1,"result":[)" + values + "0]}");
         }},
        {"long day",
         [](Fake& fake, const Request& request) {
           std::string tasks = "{}";
           for (int i = 0; i < 200'000; ++i) tasks += R"(,{"tytul":"Wysłać wniosek grantowy"})";
           fake.write(R"({"jsonrpc":"2.0","id":)" + request.id.dump() +
                      R"(,"result":{"entries":[{"date":"2025-03-14T09:30:00Z","zadania":[)" + tasks +
                      R"(]}],"policy":{"type":"after","date":"2025-03-14T09:45:00Z"}}})");
         }},
        {"no widgets",
         [](Fake& fake, const Request& request) {
           fake.answer(request, request.method == "widgets" ? json::array() : resultOf(request));
         }},
        {"a small widget alone",
         [](Fake& fake, const Request& request) {
           json result = resultOf(request);
           if (request.method == "widgets") result[0]["families"] = {"systemSmall"};
           fake.answer(request, std::move(result));
         }},
        {"notifications",
         [](Fake&, const Request&) {
           while (true) writeRaw("{\"jsonrpc\":\"2.0\",\"method\":\"changed\"}\n");
         }},
        {"a notification, then answer",
         [](Fake& fake, const Request& request) {
           fake.write(R"({"jsonrpc":"2.0","method":"changed"})");
           fake.answer(request);
         }},
        {"much on standard error",
         [](Fake& fake, const Request& request) {
           const std::string line(127, 'e');
           for (int i = 0; i < 100'000; ++i) static_cast<void>(!::write(STDERR_FILENO, (line + "\n").data(), 128));
           fake.answer(request);
         }},
        {"die leaving a grandchild",
         [](Fake& fake, const Request&) {
           startGrandchild();
           fake.waitForGrandchild();
           ::_exit(0);
         }},
        {"answer with a grandchild",
         [](Fake& fake, const Request& request) {
           startGrandchild();
           fake.waitForGrandchild();
           fake.answer(request);
         }},
        {"one unknown id, then answer",
         [](Fake& fake, const Request& request) {
           fake.write(R"({"jsonrpc":"2.0","id":99999,"result":1})");
           fake.answer(request);
         }},
        {"unknown ids",
         [](Fake&, const Request&) {
           while (true) writeRaw("{\"jsonrpc\":\"2.0\",\"id\":\"who\",\"result\":1}\n");
         }},
        {"id as text",
         [](Fake& fake, const Request& request) {
           fake.write(protocol::json_rpc::toLine(Response{.id = request.id.dump(), .outcome = resultOf(request)}));
         }},
        {"refuse",
         [](Fake& fake, const Request& request) {
           fake.write(protocol::json_rpc::toLine(
               Response{.id = request.id,
                        .outcome = std::unexpected(protocol::json_rpc::makeError(
                            protocol::json_rpc::ErrorCode::invalidParams, "\"family\": \x1b[31munknown"))}));
         }},
        {"not understand",
         [](Fake& fake, const Request&) {
           fake.write(R"({"jsonrpc":"2.0","id":null,"error":{"code":-32700,"message":"not JSON"}})");
         }},
        {"empty object", [](Fake& fake, const Request& request) { fake.answer(request, json::object()); }},
        {"close input, then answer",
         [](Fake& fake, const Request& request) {
           ::close(STDIN_FILENO);
           fake.answer(request);
           hang();
         }},
        {"answer and exit",
         [](Fake& fake, const Request& request) {
           fake.answer(request);
           ::_exit(0);
         }},
        {"byte by byte",
         [](Fake&, const Request& request) {
           const Response response{.id = request.id, .outcome = resultOf(request)};
           for (const char byte : protocol::json_rpc::toLine(response) + "\n") writeRaw({&byte, 1});
         }},
        {"large answer",
         [](Fake& fake, const Request& request) {
           json result = resultOf(request);
           result["entry"]["tytul"] = std::string(std::size_t{10} << 20, 't');
           fake.answer(request, std::move(result));
         }},
        {"drip",
         [](Fake&, const Request&) {
           while (true) {
             writeRaw(" ");
             ::usleep(1000);
           }
         }},
    };
    return behaviours;
  }

  LineReader reader_{STDIN_FILENO};
  LineWriter writer_{STDOUT_FILENO};
};

}  // namespace

int main() {
  tellProcess();
  return Fake().run();
}
