#include "base/json/json_object.hpp"

#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include <gtest/gtest.h>

#include "base/json/json_text.hpp"

namespace base {
namespace {

/// What `read` makes of an object written as JSON text.
template <typename Read>
auto reading(std::string_view text, Read read) {
  return readObject(parseJson(text).value(), "row", read);
}

template <typename Read>
std::string faultOf(std::string_view text, Read read) {
  const auto result = reading(text, read);
  return result ? "no fault" : result.error();
}

TEST(JsonObject, ReadsFieldsOfTheirTypes) {
  const std::string text = R"({"t":"ą","n":-7,"l":[1,2.0],"d":1.5,"f":false,"w":["a",""],"other":{}})";
  const auto done = reading(text, [](const JsonObject& object) {
    EXPECT_EQ(object.text("t"), "ą");
    EXPECT_EQ(object.integer("n"), -7);
    EXPECT_EQ(object.integers("l"), (std::vector<std::int64_t>{1, 2}));
    EXPECT_EQ(object.optionalNumber("d"), 1.5);
    EXPECT_EQ(object.optionalNumber("n"), -7);
    EXPECT_EQ(object.optionalFlag("f"), false);
    EXPECT_EQ(object.texts("w"), (std::vector<std::string>{"a", ""}));
    return true;
  });
  EXPECT_TRUE(done.value_or(false));
}

TEST(JsonObject, NullIsAnAbsentField) {
  for (const std::string_view text : {"{}", R"({"a":null})"}) {
    const auto done = reading(text, [](const JsonObject& object) {
      EXPECT_EQ(object.find("a"), nullptr);
      EXPECT_EQ(object.optionalText("a"), std::nullopt);
      EXPECT_EQ(object.optionalInteger("a"), std::nullopt);
      EXPECT_EQ(object.optionalNumber("a"), std::nullopt);
      EXPECT_EQ(object.optionalFlag("a"), std::nullopt);
      EXPECT_FALSE(object.optionalObject("a"));
      return true;
    });
    EXPECT_TRUE(done.value_or(false)) << text;
    EXPECT_EQ(faultOf(text, [](const JsonObject& object) { return object.text("a"); }), "a: missing");
    EXPECT_EQ(faultOf(text, [](const JsonObject& object) { return object.integer("a"); }), "a: missing");
    EXPECT_EQ(faultOf(text, [](const JsonObject& object) { return object.objects("a").size(); }), "a: missing");
  }
}

TEST(JsonObject, NamesTheFieldThatIsOfAnotherType) {
  const auto text = [](const JsonObject& object) { return object.optionalText("a"); };
  const auto integer = [](const JsonObject& object) { return object.optionalInteger("a"); };
  const auto number = [](const JsonObject& object) { return object.optionalNumber("a"); };
  const auto flag = [](const JsonObject& object) { return object.optionalFlag("a"); };
  const auto objects = [](const JsonObject& object) { return object.objects("a").size(); };
  EXPECT_EQ(faultOf(R"({"a":1})", text), "a: not a text");
  EXPECT_EQ(faultOf(R"({"a":"1"})", integer), "a: not an integer of 64 bits");
  EXPECT_EQ(faultOf(R"({"a":true})", number), "a: not a number");
  EXPECT_EQ(faultOf(R"({"a":1})", flag), "a: not true or false");
  EXPECT_EQ(faultOf(R"({"a":{}})", objects), "a: not an array");
  EXPECT_EQ(faultOf(R"({"a":[{},1]})", objects), "a[1]: not an object");
  EXPECT_EQ(faultOf("[]", text), "row: not an object");
}

TEST(JsonObject, TakesIntegersOf64BitsAndNoOther) {
  const auto integer = [](const JsonObject& object) { return object.integer("a"); };
  const std::pair<std::string_view, std::int64_t> good[] = {
      {"7", 7},
      {"7.0", 7},
      {"-0.0", 0},
      {"70e-1", 7},
      {"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
      {"-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
  };
  for (const auto& [text, value] : good) {
    EXPECT_EQ(reading(R"({"a":)" + std::string(text) + "}", integer).value_or(-1), value) << text;
  }
  for (const std::string_view text :
       {"7.5", "9223372036854775808", "-9223372036854775809", "-9223372036854776000", "18446744073709551616", "1e19"}) {
    EXPECT_EQ(faultOf(R"({"a":)" + std::string(text) + "}", integer), "a: not an integer of 64 bits") << text;
  }
}

TEST(JsonObject, PathsLeadThroughObjectsAndArrays) {
  const auto deep = [](const JsonObject& object) {
    return object.objects("rows").at(1).optionalObject("place").value().text("x");
  };
  EXPECT_EQ(reading(R"({"rows":[{},{"place":{"x":"here"}}]})", deep).value_or(""), "here");
  EXPECT_EQ(faultOf(R"({"rows":[{},{"place":{"x":1}}]})", deep), "rows[1].place.x: not a text");
}

TEST(JsonObject, ParsedTextsSayWhatTheyAreNot) {
  const auto digit = [](std::string_view text) {
    return text.size() == 1 && text[0] >= '0' && text[0] <= '9' ? std::optional(text[0] - '0') : std::nullopt;
  };
  const auto read = [&](const JsonObject& object) { return object.parsed("a", digit, "not a digit"); };
  EXPECT_EQ(reading(R"({"a":"7"})", read).value_or(-1), 7);
  EXPECT_EQ(faultOf(R"({"a":"x"})", read), "a: not a digit");
  EXPECT_EQ(faultOf("{}", read), "a: missing");
  const auto optional = [&](const JsonObject& object) { return object.optionalParsed("a", digit, "not a digit"); };
  EXPECT_EQ(reading("{}", optional).value_or(1), std::nullopt);
}

}  // namespace
}  // namespace base
