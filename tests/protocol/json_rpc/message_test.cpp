#include "protocol/json_rpc/message.hpp"

#include <string>

#include <gtest/gtest.h>

namespace protocol::json_rpc {
namespace {

using nlohmann::json;

TEST(ParseRequest, ReadsMethodParamsAndId) {
  const auto request = parseRequest(R"({"jsonrpc":"2.0","id":7,"method":"widgets","params":{"a":1},"extra":true})");
  ASSERT_TRUE(request);
  EXPECT_EQ(request->id, 7);
  EXPECT_FALSE(request->isNotification);
  EXPECT_EQ(request->method, "widgets");
  EXPECT_EQ(request->params, json({{"a", 1}}));
}

TEST(ParseRequest, HandsBackEveryIdExactly) {
  for (const char* const id : {"null", "\"a\"", "\"\"", "0", "-1", "9223372036854775807", "-9223372036854775808",
                               "18446744073709551615", "1.5"}) {
    const auto request = parseRequest(std::string(R"({"jsonrpc":"2.0","method":"m","id":)") + id + "}");
    ASSERT_TRUE(request) << id;
    EXPECT_FALSE(request->isNotification);
    EXPECT_EQ(request->id.dump(), id);
  }
}

TEST(ParseRequest, TellsANotificationFromTheIdNull) {
  const auto request = parseRequest(R"({"jsonrpc":"2.0","method":"m"})");
  ASSERT_TRUE(request);
  EXPECT_TRUE(request->isNotification);
  EXPECT_TRUE(request->params.is_null());
}

TEST(ParseRequest, OwesAnErrorToWhatIsNoRequest) {
  struct Case {
    const char* line;
    ErrorCode code;
    json id;
  };
  for (const Case& c : {
           Case{"", ErrorCode::parseError, nullptr},
           Case{"{", ErrorCode::parseError, nullptr},
           Case{"{\"id\":1}{}", ErrorCode::parseError, nullptr},
           Case{"[]", ErrorCode::invalidRequest, nullptr},
           Case{R"([{"jsonrpc":"2.0","id":1,"method":"m"}])", ErrorCode::invalidRequest, nullptr},
           Case{"7", ErrorCode::invalidRequest, nullptr},
           Case{"{}", ErrorCode::invalidRequest, nullptr},
           Case{R"({"id":1,"method":"m"})", ErrorCode::invalidRequest, 1},
           Case{R"({"jsonrpc":"1.0","id":1,"method":"m"})", ErrorCode::invalidRequest, 1},
           Case{R"({"jsonrpc":2.0,"id":1,"method":"m"})", ErrorCode::invalidRequest, 1},
           Case{R"({"jsonrpc":"2.0","id":"x"})", ErrorCode::invalidRequest, "x"},
           Case{R"({"jsonrpc":"2.0","id":2,"method":1})", ErrorCode::invalidRequest, 2},
           Case{R"({"jsonrpc":"2.0","id":{},"method":"m"})", ErrorCode::invalidRequest, nullptr},
           Case{R"({"jsonrpc":"2.0","id":true,"method":"m"})", ErrorCode::invalidRequest, nullptr},
           Case{R"({"jsonrpc":"2.0","id":3,"method":"m","params":5})", ErrorCode::invalidRequest, 3},
       }) {
    const auto request = parseRequest(c.line);
    ASSERT_FALSE(request) << c.line;
    EXPECT_EQ(request.error().id, c.id) << c.line;
    ASSERT_FALSE(request.error().outcome) << c.line;
    EXPECT_EQ(request.error().outcome.error().code, static_cast<int>(c.code)) << c.line;
    EXPECT_FALSE(request.error().outcome.error().message.empty()) << c.line;
  }
}

TEST(RequestLine, ReadsBackEqual) {
  const auto request = parseRequest(requestLine("7", "render \"\xff", R"({"family":"systemSmall"})"));
  ASSERT_TRUE(request);
  EXPECT_EQ(request->id, "7");
  EXPECT_EQ(request->method, "render \"\ufffd");
  EXPECT_EQ(request->params, json({{"family", "systemSmall"}}));
  EXPECT_EQ(requestLine(1, "widgets", ""), R"({"id":1,"jsonrpc":"2.0","method":"widgets"})");
}

TEST(ToLine, ResponsesReadBackEqual) {
  for (const Response& response : {
           Response{.id = 9007199254740993, .outcome = json{{"view", {{"type", "divider"}}}}},
           Response{.id = nullptr, .outcome = std::unexpected(makeError(ErrorCode::parseError, "not JSON"))},
           Response{.id = "a", .outcome = std::unexpected(Error{.code = 3, .message = "\n"})},
           Response{.id = 1, .outcome = json(nullptr)},
       }) {
    const std::string line = toLine(response);
    EXPECT_EQ(line.find('\n'), std::string::npos);
    const auto again = parseResponse(line);
    ASSERT_TRUE(again) << line << ": " << again.error();
    EXPECT_EQ(again->id, response.id);
    EXPECT_EQ(again->outcome, response.outcome);
  }
}

TEST(ParseResponse, RefusesWhatIsNoResponse) {
  for (const char* const line : {
           "",
           "garbage",
           "[]",
           R"({"id":1,"result":1})",
           R"({"jsonrpc":"2.0","result":1})",
           R"({"jsonrpc":"2.0","id":[],"result":1})",
           R"({"jsonrpc":"2.0","id":1})",
           R"({"jsonrpc":"2.0","id":1,"result":1,"error":{"code":1,"message":""}})",
           R"({"jsonrpc":"2.0","id":1,"error":5})",
           R"({"jsonrpc":"2.0","id":1,"error":{"code":1}})",
           R"({"jsonrpc":"2.0","id":1,"error":{"code":"1","message":""}})",
           R"({"jsonrpc":"2.0","id":1,"error":{"code":18446744073709518916,"message":""}})",
           R"({"jsonrpc":"2.0","id":1,"error":{"code":1.5,"message":""}})",
           R"({"jsonrpc":"2.0","method":"m"})",
       }) {
    EXPECT_FALSE(parseResponse(line)) << line;
  }
}

}  // namespace
}  // namespace protocol::json_rpc
