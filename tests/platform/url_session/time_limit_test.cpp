#include <functional>
#include <future>
#include <memory>

#include <gtest/gtest.h>

#include "loading.hpp"
#include "silent_resolver.hpp"
#include "support/scripted_http_server.hpp"

namespace platform {
namespace {

using Kind = TransportError::Kind;
using std::chrono::milliseconds;
using support::Drip;
using support::Send;
using support::Stall;

constexpr milliseconds limit(150);

// Keeps a load waiting for ever in one phase.
struct Silence {
  support::ScriptedHttpServer server;
  support::FullListener full;
  SilentResolver resolver;
  std::string url;
  std::function<bool()> reached = [] { return true; };
};

struct Phase {
  std::string name;
  std::function<void(Silence&)> prepare;
};

const std::vector<Phase>& phases() {
  static const std::vector<Phase> all{
      {"looking the name up",
       [](Silence& silence) {
         silence.url = "http://service.silent/x";
         silence.reached = [] { return SilentResolver::waitForLookUp(); };
       }},
      {"connecting",
       [](Silence& silence) { silence.url = "http://127.0.0.1:" + std::to_string(silence.full.port()) + "/x"; }},
      {"TLS handshake",
       [](Silence& silence) {
         silence.server.onAccept({Stall{}});
         silence.url = "https://127.0.0.1:" + std::to_string(silence.server.port()) + "/x";
         silence.reached = [&silence] { return silence.server.waitForConnections(1); };
       }},
      {"waiting for the header",
       [](Silence& silence) {
         silence.server.script("/x", {Stall{}});
         silence.url = silence.server.url("/x");
         silence.reached = [&silence] { return silence.server.waitForRequests(1); };
       }},
      {"inside the header",
       [](Silence& silence) {
         silence.server.script("/x", {Send{"HTTP/1.1 200 OK\r\nA: b\r\n"}, Stall{}});
         silence.url = silence.server.url("/x");
         silence.reached = [&silence] { return silence.server.waitForRequests(1); };
       }},
      {"inside the body",
       [](Silence& silence) {
         silence.server.script("/x", {Send{"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nbody"}, Stall{}});
         silence.url = silence.server.url("/x");
         silence.reached = [&silence] { return silence.server.waitForRequests(1); };
       }},
  };
  return all;
}

// Without the limit these loads would wait for ever.
TEST(TimeLimit, OfTheSessionEndsALoadInEveryPhase) {
  for (const Phase& phase : phases()) {
    Silence silence;
    phase.prepare(silence);
    auto configuration = patientConfiguration();
    configuration.timeoutIntervalForResource = absl::FromChrono(limit);
    const UrlSession session(configuration);
    const Stopwatch stopwatch;
    EXPECT_EQ(errorOf(session.data(requestFor(silence.url))).kind, Kind::timedOut) << phase.name;
    EXPECT_GE(stopwatch.elapsed(), limit) << phase.name;
  }
}

TEST(TimeLimit, OfTheRequestHoldsWhereItComesFirst) {
  support::ScriptedHttpServer server;
  server.script("/x", {Stall{}});
  const UrlSession session(patientConfiguration());
  UrlRequest request = requestFor(server.url("/x"));
  request.deadline = base::Deadline::after(limit);
  EXPECT_EQ(errorOf(session.data(request)).kind, Kind::timedOut);
  request.deadline = base::Deadline::after({});
  EXPECT_EQ(errorOf(session.data(request)).kind, Kind::timedOut);
}

TEST(TimeLimit, EndsABodyThatKeepsDripping) {
  support::ScriptedHttpServer server;
  server.script("/x", {Send{"HTTP/1.1 200 OK\r\nContent-Length: 99999\r\n\r\n"},
                       Drip{std::string(99'999, 'x'), milliseconds(5)}});
  auto configuration = patientConfiguration();
  configuration.timeoutIntervalForResource = absl::FromChrono(limit);
  const UrlSession session(configuration);
  EXPECT_EQ(errorOf(session.data(requestFor(server.url("/x")))).kind, Kind::timedOut);
}

TEST(Cancelling, EndsALoadInEveryPhase) {
  for (const Phase& phase : phases()) {
    Silence silence;
    phase.prepare(silence);
    const UrlSession session(patientConfiguration());
    std::stop_source stop;
    auto loaded =
        std::async(std::launch::async, [&] { return session.data(requestFor(silence.url), stop.get_token()); });
    ASSERT_TRUE(silence.reached()) << phase.name;
    stop.request_stop();
    EXPECT_EQ(errorOf(loaded.get()).kind, Kind::cancelled) << phase.name;
  }
}

TEST(Cancelling, EndsTheTransferItselfToo) {
  support::ScriptedHttpServer server;
  server.script("/x", {Stall{}});
  const UrlSession session(patientConfiguration());
  std::stop_source stop;
  auto loaded =
      std::async(std::launch::async, [&] { return session.data(requestFor(server.url("/x")), stop.get_token()); });
  ASSERT_TRUE(server.waitForRequests(1));
  stop.request_stop();
  EXPECT_TRUE(server.waitForHangUps(1));
  EXPECT_EQ(errorOf(loaded.get()).kind, Kind::cancelled);
}

TEST(Cancelling, BeforeTheLoadSendsNothing) {
  support::ScriptedHttpServer server;
  const UrlSession session(patientConfiguration());
  std::stop_source stop;
  stop.request_stop();
  EXPECT_EQ(errorOf(session.data(requestFor(server.url("/x")), stop.get_token())).kind, Kind::cancelled);
  EXPECT_EQ(server.connectionCount(), 0U);
}

TEST(Cancelling, LeavesOtherLoadsAlone) {
  support::ScriptedHttpServer server;
  const auto event = std::make_shared<support::Event>();
  server.script("/stalled", {Stall{}});
  server.script("/held", {support::Await{event}, Send{support::HttpAnswer{200, "body"}.bytes()}});
  const UrlSession session(patientConfiguration());
  std::stop_source stop;
  auto stalled = std::async(std::launch::async,
                            [&] { return session.data(requestFor(server.url("/stalled")), stop.get_token()); });
  auto held = std::async(std::launch::async, [&] { return session.data(requestFor(server.url("/held"))); });
  ASSERT_TRUE(server.waitForRequests(2));
  stop.request_stop();
  EXPECT_EQ(errorOf(stalled.get()).kind, Kind::cancelled);
  event->set();
  EXPECT_EQ(summary(held.get()), "200 body");
}

TEST(SilentResolver, DelaysNoOtherLoad) {
  const SilentResolver resolver;
  support::ScriptedHttpServer server;
  server.answer("/x", {200, "body"});
  const UrlSession session(patientConfiguration());
  std::stop_source stop;
  auto waiting = std::async(std::launch::async,
                            [&] { return session.data(requestFor("http://service.silent/"), stop.get_token()); });
  ASSERT_TRUE(SilentResolver::waitForLookUp());
  EXPECT_EQ(summary(session.data(requestFor(server.url("/x")))), "200 body");
  stop.request_stop();
  EXPECT_EQ(errorOf(waiting.get()).kind, Kind::cancelled);
}

TEST(SilentResolver, DoesNotHoldTheEndOfTheSession) {
  const SilentResolver resolver;
  auto session = std::make_unique<UrlSession>(patientConfiguration());
  std::stop_source stop;
  auto waiting = std::async(std::launch::async,
                            [&] { return session->data(requestFor("http://service.silent/"), stop.get_token()); });
  ASSERT_TRUE(SilentResolver::waitForLookUp());
  stop.request_stop();
  EXPECT_EQ(errorOf(waiting.get()).kind, Kind::cancelled);
  session.reset();
}

}  // namespace
}  // namespace platform
