#include "platform/url_session/request_headers.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "loading.hpp"
#include "support/scripted_http_server.hpp"

namespace platform {
namespace {

using Kind = TransportError::Kind;
using namespace std::string_literals;
using testing::ElementsAre;

TEST(RequestHeaders, PutsTheValueWithALineEndLast) {
  const auto headers = RequestHeaders::encode({{"Authorization", "Bearer tok\n"}, {"Accept", "application/json"}});
  ASSERT_TRUE(headers);
  EXPECT_THAT(headers->lines,
              ElementsAre("Accept: application/json", "Connection: close", "Authorization: Bearer tok\n"));
  EXPECT_TRUE(headers->endsInLineEnd);
}

TEST(RequestHeaders, RefusesWhatCouldBecomeAnotherFieldOrCannotBeCarried) {
  for (const auto& fields : std::vector<std::vector<HeaderField>>{
           {{"A", "x\0"s}},
           {{"A", "\0x"s}},
           {{"A", "x\nB: y"}},
           {{"A", "x\r\nB: y"}},
           {{"A", "x\rB: y"}},
           {{"A", "x\n folded"}},
           {{"A", "\nx"}},
           {{"A", "x\n\n"}},
           {{"A", "x\r\n\r\n"}},
           {{"A", "x\n\r"}},
           {{"A", "x\n"}, {"B", "y\n"}},
           {{"", "x"}},
           {{"A b", "x"}},
           {{"A:", "x"}},
           {{"A\r\nB", "x"}},
       }) {
    const auto headers = RequestHeaders::encode(fields);
    ASSERT_FALSE(headers) << fields[0].name << ": " << fields[0].value.text();
    EXPECT_EQ(headers.error().kind, Kind::badHeader);
  }
}

TEST(RequestHeaders, ErrorNeverHoldsTheValue) {
  const auto headers = RequestHeaders::encode({{"Authorization", "Bearer secret\nX: y"}});
  ASSERT_FALSE(headers);
  EXPECT_EQ(headers.error().description.find("secret"), std::string::npos);
}

TEST(UrlRequest, SettingAFieldAgainReplacesItsValueInAnyCase) {
  UrlRequest request = requestFor("http://h/");
  request.setValue("one", "Accept");
  request.setValue("two", "ACCEPT");
  EXPECT_THAT(request.headers, ElementsAre(HeaderField{"Accept", "two"}));
}

TEST(UrlSession, SendsExactlyTheFieldsOfTheRequest) {
  struct Case {
    std::string token;
    std::string onTheWire;  // behind "Host: ...\r\n"
  };
  for (const auto& [token, onTheWire] : std::vector<Case>{
           {"tok", "Authorization: Bearer tok\r\nAccept: application/json\r\n\r\n"},
           {" tok  ", "Authorization: Bearer  tok  \r\nAccept: application/json\r\n\r\n"},
           {"\ttok\t", "Authorization: Bearer \ttok\t\r\nAccept: application/json\r\n\r\n"},
           {"zażółć;:,", "Authorization: Bearer zażółć;:,\r\nAccept: application/json\r\n\r\n"},
           {"", "Authorization: Bearer \r\nAccept: application/json\r\n\r\n"},
           // A server that takes the bare line end for a field's end meets the end of the header section at once.
           {"tok\n", "Accept: application/json\r\nConnection: close\r\nAuthorization: Bearer tok\n\r\n\r\n"},
           {"tok\r\n", "Accept: application/json\r\nConnection: close\r\nAuthorization: Bearer tok\r\n\r\n\r\n"},
           {"tok\r", "Accept: application/json\r\nConnection: close\r\nAuthorization: Bearer tok\r\r\n\r\n"},
       }) {
    support::ScriptedHttpServer server;
    server.answer("/x", {200, "body"});
    UrlRequest request = requestFor(server.url("/x"));
    request.setValue("Bearer " + token, "Authorization");
    request.setValue("application/json", "Accept");
    {
      const UrlSession session(patientConfiguration());
      ASSERT_EQ(summary(session.data(request)), "200 body") << token;
    }
    ASSERT_TRUE(token.find('\n') != std::string::npos || server.waitForHangUps(1));
    EXPECT_EQ(server.received(0),
              "GET /x HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(server.port()) + "\r\n" + onTheWire);
  }
}

TEST(UrlSession, SendsAnEmptyField) {
  support::ScriptedHttpServer server;
  server.answer("/x", {200, "body"});
  UrlRequest request = requestFor(server.url("/x"));
  request.setValue("", "Accept");
  const UrlSession session(patientConfiguration());
  ASSERT_EQ(summary(session.data(request)), "200 body");
  EXPECT_EQ(server.requests().at(0).header("Accept"), "");
}

TEST(UrlSession, SendsNothingBehindAValueThatEndsInALineEnd) {
  support::ScriptedHttpServer server;
  server.answer("/x", {200, "body"});
  UrlRequest request = requestFor(server.url("/x"));
  request.setValue("Bearer tok\n", "Authorization");
  const UrlSession session(patientConfiguration());
  ASSERT_EQ(summary(session.data(request)), "200 body");
  ASSERT_EQ(summary(session.data(request)), "200 body");
  EXPECT_EQ(server.connectionCount(), 2U);
}

TEST(UrlSession, SendsNoRequestWithABadHeader) {
  support::ScriptedHttpServer server;
  UrlRequest request = requestFor(server.url("/x"));
  request.setValue("Bearer x\nEvil: y", "Authorization");
  const UrlSession session(patientConfiguration());
  EXPECT_EQ(errorOf(session.data(request)).kind, Kind::badHeader);
  EXPECT_EQ(server.connectionCount(), 0U);
}

}  // namespace
}  // namespace platform
