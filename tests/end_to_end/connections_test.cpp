// A process that is kept and loads again and again, against a server that ends, resets and abuses its connections. Each
// load has data of its own, told by its number.
#include <algorithm>
#include <functional>
#include <set>

#include <absl/time/clock.h>

#include "base/text/instant.hpp"
#include "end_to_end/extension_fixture.hpp"
#include "support/nginx_server.hpp"
#include "support/scripted_http2_server.hpp"
#include "support/shifted_clock/shifted_clock.hpp"

namespace end_to_end {
namespace {

namespace http2 = support::http2;
using support::Http2Connection;
using support::Http2Request;

// Types of frames and names of settings, as RFC 9113 numbers them.
constexpr std::uint8_t settings = 4;
constexpr std::uint8_t pushPromise = 5;
constexpr std::uint8_t unknownType = 99;
constexpr std::uint16_t maxConcurrentStreams = 3;
constexpr std::uint16_t initialWindowSize = 4;
constexpr std::uint16_t unknownSetting = 99;

/// The three answers to one load, with its number as both titles and as the count to decide.
class NumberedDay {
 public:
  NumberedDay(int number, absl::Time now) : number_(number), now_(now) {}

  std::string bodyFor(std::string_view path) const {
    const auto title = std::to_string(number_);
    if (path.ends_with("/moje/zadania")) {
      return json::array({serverTask(number_, title, base::formatInstant(now_ - absl::Hours(48)))}).dump();
    }
    if (path.ends_with("/spotkania-planowane")) {
      return json::array({serverMeeting(number_, title, base::formatInstant(now_ + absl::Hours(1)))}).dump();
    }
    return json{{"zadania", std::vector<json>(static_cast<std::size_t>(number_), serverTask(1, "A", std::nullopt))}}
        .dump();
  }
  std::string answerTo(const Http2Request& request) const {
    return http2::answer(request.stream, bodyFor(request.path));
  }

  /// What a load's entry has of this day.
  void expectIn(const json& entry) const {
    EXPECT_FALSE(entry.contains("blad")) << entry["blad"];
    EXPECT_THAT(fieldOf(entry["zadania"], "tytul"), testing::ElementsAre(std::to_string(number_)));
    EXPECT_THAT(fieldOf(entry["spotkania"], "tytul"), testing::ElementsAre(std::to_string(number_)));
    EXPECT_EQ(entry["doDecyzji"], number_);
  }

 private:
  int number_;
  absl::Time now_;
};

/// The three requests of a load, or as many as come.
std::vector<Http2Request> threeRequests(Http2Connection& connection) {
  std::vector<Http2Request> requests;
  while (requests.size() < 3) {
    auto next = connection.request();
    if (!next) break;
    requests.push_back(*std::move(next));
  }
  return requests;
}

std::string answers(const std::vector<Http2Request>& requests, const NumberedDay& day) {
  std::string frames;
  for (const auto& each : requests) frames += day.answerTo(each);
  return frames;
}

using Script = std::function<void(Http2Connection&, const NumberedDay& day, const NumberedDay& unasked)>;
struct NamedScript {
  std::string name;
  Script script;
};

/// Frames around the answers to the load's three requests.
Script around(const std::function<std::string()>& before, const std::function<std::string()>& behind) {
  return [=](Http2Connection& connection, const NumberedDay& day, const NumberedDay&) {
    const auto requests = threeRequests(connection);
    connection.send(before() + answers(requests, day) + behind());
  };
}

std::string nothing() { return {}; }

/// The highest stream of a load that has had a connection to itself.
constexpr std::uint32_t lastStream = 5;

/// Each load is answered, whatever else the server sends.
std::vector<NamedScript> scriptsThatAnswer() {
  return {
      {"nothing but the answers", around(nothing, nothing)},
      {"GOAWAY behind the answers", around(nothing, [] { return http2::goAway(lastStream); })},
      {"GOAWAY before the answers", around([] { return http2::goAway(lastStream); }, nothing)},
      {"GOAWAY in two steps",
       around([] { return http2::goAway(http2::highestStream); }, [] { return http2::goAway(lastStream); })},
      {"GOAWAY with an error behind the answers",
       around(nothing, [] { return http2::goAway(lastStream, http2::Error::calmDown); })},
      {"closed when idle",
       [](Http2Connection& connection, const NumberedDay& day, const NumberedDay&) {
         connection.send(answers(threeRequests(connection), day));
         connection.endOutput();
       }},
      {"frames between the answers",
       [](Http2Connection& connection, const NumberedDay& day, const NumberedDay&) {
         for (const auto& each : threeRequests(connection)) {
           connection.send(http2::ping() + http2::setting(initialWindowSize, 1 << 20) + http2::windowUpdate(0, 1000) +
                           http2::frame(unknownType, 255, each.stream, "of a type that nobody knows") +
                           http2::setting(unknownSetting, 99) + http2::head(each.stream, 103) + day.answerTo(each));
         }
       }},
      {"one request at a time",
       [](Http2Connection& connection, const NumberedDay& day, const NumberedDay&) {
         connection.send(http2::setting(maxConcurrentStreams, 1));
         while (const auto request = connection.request()) connection.send(day.answerTo(*request));
       }},
      {"answers in frames of one byte, the last one first",
       [](Http2Connection& connection, const NumberedDay& day, const NumberedDay&) {
         auto requests = threeRequests(connection);
         std::ranges::reverse(requests);
         for (const auto& each : requests) connection.send(http2::head(each.stream, 200));
         for (const auto& each : requests) {
           // In one write: hundreds of them may take a busy machine longer than a load may last.
           std::string frames;
           for (const char byte : day.bodyFor(each.path)) frames += http2::data(each.stream, {&byte, 1}, false);
           connection.send(frames + http2::data(each.stream, {}, true));
         }
       }},
      {"unasked answer on the next stream",
       [](Http2Connection& connection, const NumberedDay& day, const NumberedDay& unasked) {
         const auto requests = threeRequests(connection);
         connection.send(answers(requests, day) + http2::answer(lastStream + 2, unasked.bodyFor(requests[0].path)));
       }},
      {"each answer twice",
       [](Http2Connection& connection, const NumberedDay& day, const NumberedDay& unasked) {
         const auto requests = threeRequests(connection);
         connection.send(answers(requests, day) + answers(requests, unasked));
       }},
      {"RST_STREAM behind the answers",
       [](Http2Connection& connection, const NumberedDay& day, const NumberedDay&) {
         for (const auto& each : threeRequests(connection)) {
           connection.send(day.answerTo(each) + http2::reset(each.stream, http2::Error::none));
         }
       }},
  };
}

/// Two requests are answered; the third gets these frames.
Script lastRequestGets(const std::function<std::string(std::uint32_t stream)>& frames, bool closes = false) {
  return [=](Http2Connection& connection, const NumberedDay& day, const NumberedDay&) {
    auto requests = threeRequests(connection);
    if (requests.size() < 3) return;
    const auto last = requests.back().stream;
    requests.pop_back();
    connection.send(answers(requests, day) + frames(last));
    if (closes) connection.endOutput();
  };
}

std::vector<NamedScript> scriptsThatLeaveARequestOut() {
  const auto resetWith = [](http2::Error error) {
    return lastRequestGets([error](auto stream) { return http2::reset(stream, error); });
  };
  return {
      {"GOAWAY that leaves a request out", lastRequestGets([](auto stream) { return http2::goAway(stream - 2); })},
      {"GOAWAY that refuses all", lastRequestGets([](auto) { return http2::goAway(0, http2::Error::calmDown); })},
      {"closed with an open request", lastRequestGets([](auto) { return std::string(); }, true)},
      {"closed inside an answer",
       lastRequestGets([](auto stream) { return http2::head(stream, 200) + http2::data(stream, "[", false); }, true)},
      {"RST_STREAM REFUSED_STREAM", resetWith(http2::Error::refusedStream)},
      {"RST_STREAM CANCEL", resetWith(http2::Error::cancel)},
      {"RST_STREAM INTERNAL_ERROR", resetWith(http2::Error::internal)},
      {"RST_STREAM HTTP_1_1_REQUIRED", resetWith(http2::Error::http1)},
      {"RST_STREAM inside an answer", lastRequestGets([](auto stream) {
         return http2::head(stream, 200) + http2::data(stream, "[", false) +
                http2::reset(stream, http2::Error::internal);
       })},
      {"a promise that nobody allowed", lastRequestGets([](auto stream) {
         return http2::frame(pushPromise, 4, stream, std::string("\0\0\0\2\x82", 5));
       })},
      {"unasked answer before the last one",
       lastRequestGets([](auto stream) { return http2::answer(stream + 2, "[]") + http2::answer(stream, "[]"); })},
      {"SETTINGS of a wrong length", lastRequestGets([](auto) { return http2::frame(settings, 0, 0, "1234567"); })},
  };
}

class ExtensionConnectionsTest : public ExtensionTest {
 protected:
  ExtensionConnectionsTest() {
    for (const auto& [name, value] : clock_.environment()) environment[name] = value;
    environment["SSL_CERT_FILE"] = server_.authorityFile();
    items.store("token-urzadzenia", "tajne-7");
  }

  /// The next load's entry from a server with this script.
  json loadWith(const Script& script) {
    const NumberedDay unasked(++number_ + 1000, clock_.now());
    server_.serve([script, day = day(), unasked](auto& connection) { script(connection, day, unasked); });
    items.store("adres-api", server_.url("/" + std::to_string(number_)));
    const json entry = loadEntry();
    EXPECT_TRUE(server_.waitUntilAllAreClosed()) << "a connection outlives its load";
    return entry;
  }
  NumberedDay day() const { return {number_, clock_.now()}; }

  void expectEachRequestOnce() const {
    std::map<std::string, int> times;
    for (const auto& each : server_.requests()) ++times[each.path];
    EXPECT_EQ(times.size(), 3 * static_cast<std::size_t>(number_)) << "of each load three";
    for (const auto& [path, count] : times) EXPECT_EQ(count, 1) << path;
  }

  // The server's certificate is valid from today on.
  support::ShiftedClock clock_{absl::Now(), "Europe/Warsaw"};
  support::ScriptedHttp2Server server_;
  int number_ = 0;
};

TEST_F(ExtensionConnectionsTest, EachLoadHasItsOwnDataWhateverTheServerDoesWithIdleConnections) {
  for (const auto pause : {absl::Minutes(1), absl::Minutes(15)}) {
    for (const auto& [name, script] : scriptsThatAnswer()) {
      SCOPED_TRACE(name);
      const json entry = loadWith(script);
      day().expectIn(entry);
      clock_.set(clock_.now() + pause);
    }
  }
  expectEachRequestOnce();
  EXPECT_EQ(extension().diagnostics(), "");
}

TEST_F(ExtensionConnectionsTest, LoadThatLosesARequestFailsAndTheNextOneDoesNot) {
  for (const auto& [name, script] : scriptsThatLeaveARequestOut()) {
    SCOPED_TRACE(name);
    EXPECT_EQ(loadWith(script)["blad"], noConnection);
    clock_.set(clock_.now() + absl::Minutes(15));
    const json entry = loadWith(around(nothing, nothing));
    day().expectIn(entry);
    clock_.set(clock_.now() + absl::Minutes(5));
  }
  expectEachRequestOnce();
}

// nginx would keep an idle connection for an hour.
TEST_F(ExtensionConnectionsTest, LoadsForTwentyMinutesFromAnNginxOnNewConnectionsEachTime) {
  support::ScriptedHttpServer behind;
  const std::string directives =
      "    keepalive_timeout 1h;\n    location / { proxy_http_version 1.1; proxy_pass " + behind.url() + "; }\n";
  for (const auto protocol : {support::NginxProtocol::tlsHttp1, support::NginxProtocol::tlsHttp2}) {
    support::NginxServer nginx({.protocol = protocol, .directives = directives});
    environment["SSL_CERT_FILE"] = nginx.authorityFile();
    restart();
    for (int load = 0; load < 5; ++load) {
      const auto address = "/" + std::to_string(++number_);
      for (const std::string path : {"/moje/zadania", "/skrzynka", "/spotkania-planowane"}) {
        behind.answer(address + path, {.body = day().bodyFor(path)});
      }
      items.store("adres-api", nginx.url(address));
      const json entry = loadEntry();
      day().expectIn(entry);
      clock_.set(clock_.now() + absl::Minutes(5));
    }
    std::map<std::string, std::string> addressOf;
    std::set<std::string> targets;
    for (const auto& request : nginx.endAndReadLog()) {
      const auto address = request.target.substr(0, request.target.find('/', 1));
      EXPECT_EQ(addressOf.try_emplace(request.connection, address).first->second, address)
          << "a connection of two loads";
      EXPECT_TRUE(targets.insert(request.target).second) << request.target << " was asked for twice";
    }
    EXPECT_EQ(targets.size(), 15U) << nginx.errorLog();
  }
}

}  // namespace
}  // namespace end_to_end
