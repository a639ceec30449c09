#include <gtest/gtest.h>

#include "loading.hpp"
#include "support/scripted_http_server.hpp"

namespace platform {
namespace {

using Kind = TransportError::Kind;
using support::Close;
using support::Reset;
using support::Send;
using support::Step;

TEST(Response, IsTakenInEveryFormThatHttpHas) {
  struct Case {
    std::string name, bytes, summary;
  };
  for (const auto& [name, bytes, expected] : std::vector<Case>{
           {"length", "HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nbody", "200 body"},
           {"chunked", "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\nbo\r\n2\r\ndy\r\n0\r\n\r\n",
            "200 body"},
           {"trailer that looks like a status",
            "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4\r\nbody\r\n0\r\n"
            "HTTP/1.1 100: x\r\n\r\n",
            "200 body"},
           {"until close", "HTTP/1.1 200 OK\r\n\r\nbody", "200 body"},
           {"HTTP/1.0", "HTTP/1.0 500 Oh\r\n\r\nbody", "500 body"},
           {"bare line feeds", "HTTP/1.1 200 OK\nContent-Length: 4\n\nbody", "200 body"},
           {"no reason", "HTTP/1.1 204\r\n\r\n", "204 "},
           {"early hints", "HTTP/1.1 103 Early\r\nLink: x\r\n\r\nHTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nbody",
            "200 body"},
           {"continue", "HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 401 No\r\nContent-Length: 0\r\n\r\n", "401 "},
           {"switching", "HTTP/1.1 101 Switching\r\n\r\n", "101 "},
           {"unknown status", "HTTP/1.1 599 X\r\nContent-Length: 0\r\n\r\n", "599 "},
           {"HTTP/0.9", "a text without a header\r\nat all", "none a text without a header\r\nat all"},
           {"short HTTP/0.9", "[]", "none []"},
       }) {
    support::ScriptedHttpServer server;
    server.script("/x", {Send{bytes}, Close{}});
    const UrlSession session(patientConfiguration());
    EXPECT_EQ(summary(session.data(requestFor(server.url("/x")))), expected) << name;
  }
}

TEST(Response, ThatIsNotWholeIsATransportError) {
  struct Case {
    std::string name;
    std::vector<Step> steps;
  };
  const std::string chunked = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
  for (const auto& [name, steps] : std::vector<Case>{
           {"closed at once", {Close{}}},
           {"reset at once", {Reset{}}},
           {"cut in the version", {Send{"HTT"}, Close{}}},
           {"cut in the status", {Send{"HTTP/1.1 20"}, Close{}}},
           {"cut behind the status line", {Send{"HTTP/1.1 200 OK\r\n"}, Close{}}},
           {"cut in a field", {Send{"HTTP/1.1 200 OK\r\nContent-Ty"}, Close{}}},
           {"cut behind a field", {Send{"HTTP/1.1 200 OK\r\nContent-Length: 0\r\n"}, Close{}}},
           {"cut before the blank line's end", {Send{"HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r"}, Close{}}},
           {"cut behind early hints", {Send{"HTTP/1.1 103 Early\r\n\r\n"}, Close{}}},
           {"cut in the header behind early hints",
            {Send{"HTTP/1.1 103 Early\r\n\r\nHTTP/1.1 200 OK\r\nA: b\r\n"}, Close{}}},
           {"no body byte", {Send{"HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\n"}, Close{}}},
           {"short body", {Send{"HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nbod"}, Close{}}},
           {"reset in the body", {Send{"HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nbod"}, Reset{}}},
           {"no last chunk", {Send{chunked + "4\r\nbody\r\n"}, Close{}}},
           {"cut in a chunk", {Send{chunked + "4\r\nbo"}, Close{}}},
           {"no chunk length", {Send{chunked + "zz\r\nbody\r\n0\r\n\r\n"}, Close{}}},
           {"chunk longer than said", {Send{chunked + "2\r\nbody\r\n0\r\n\r\n"}, Close{}}},
           {"bad length", {Send{"HTTP/1.1 200 OK\r\nContent-Length: -4\r\n\r\nbody"}, Close{}}},
       }) {
    support::ScriptedHttpServer server;
    server.script("/x", steps);
    const UrlSession session(patientConfiguration());
    const auto loaded = session.data(requestFor(server.url("/x")));
    EXPECT_FALSE(loaded) << name << ": " << summary(loaded);
  }
}

TEST(Response, CutInsideItsHeaderIsALostConnection) {
  support::ScriptedHttpServer server;
  server.script("/x", {Send{"HTTP/1.1 200 OK\r\nContent-Type: a\r\n"}, Close{}});
  const UrlSession session(patientConfiguration());
  EXPECT_EQ(errorOf(session.data(requestFor(server.url("/x")))).kind, Kind::connectionLost);
}

TEST(Response, MayBeAsLongAsTheLimitAndNoLonger) {
  constexpr std::size_t limit = 100'000;
  auto configuration = patientConfiguration();
  configuration.longestBody = limit;
  const UrlSession session(configuration);
  const auto chunkedBody = [](std::size_t length) {
    return "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nffffff\r\n" + std::string(length, 'x');
  };
  support::ScriptedHttpServer server;
  server.answer("/longest", {200, std::string(limit, 'x')});
  server.script("/said", {Send{"HTTP/1.1 200 OK\r\nContent-Length: 100001\r\n\r\n"}, support::Stall{}});
  server.script("/chunked", {Send{chunkedBody(limit + 1)}, support::Stall{}});
  server.script("/untilClose", {Send{"HTTP/1.1 200 OK\r\n\r\n" + std::string(limit + 1, 'x')}, support::Stall{}});

  const auto longest = session.data(requestFor(server.url("/longest")));
  ASSERT_TRUE(longest) << longest.error().description;
  EXPECT_EQ(longest->data.size(), limit);
  for (const std::string path : {"/said", "/chunked", "/untilClose"}) {
    EXPECT_EQ(errorOf(session.data(requestFor(server.url(path)))).kind, Kind::tooLarge) << path;
  }
}

TEST(Response, IsLimitedTo16MiBUnlessConfiguredOtherwise) {
  EXPECT_EQ(UrlSessionConfiguration::ephemeral().longestBody, std::size_t{16} * 1024 * 1024);
}

TEST(Response, WithAnEndlessHeaderIsATransportError) {
  support::ScriptedHttpServer server;
  std::string fields;
  for (int i = 0; i < 30'000; ++i) fields += "X-Field-" + std::to_string(i) + ": " + std::string(50, 'x') + "\r\n";
  server.script("/x", {Send{"HTTP/1.1 200 OK\r\n" + fields}, support::Stall{}});
  const UrlSession session(patientConfiguration());
  EXPECT_FALSE(session.data(requestFor(server.url("/x"))));
}

}  // namespace
}  // namespace platform
