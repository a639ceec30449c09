#include "platform/json_decoding/json_decoder.hpp"

#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "platform/json_decoding/test_types.hpp"

namespace platform {
namespace {

using Kind = DecodingError::Kind;

template <typename T>
std::expected<T, DecodingError> decode(std::string_view body) {
  return decoderOfTallies().decode<T>(body);
}

TEST(JsonDecoder, ReadsARecordWhateverTheOrderOfItsKeys) {
  for (
      const std::string_view body :
      {R"({"x":-3,"name":"ą","note":"n","when":"xx"})", R"({"when":"xx","note":"n","name":"ą","x":-3})",
       R"( { "other" : [ {"x":9} ] , "name" : "\u0105" , "x" : -3.0 , "when" : "\u0078x" , "note" : "n" , "X" : 1 } )"}) {
    const auto point = decode<Point>(body);
    ASSERT_TRUE(point) << body;
    EXPECT_EQ(point->x, -3);
    EXPECT_EQ(point->name, "ą");
    EXPECT_EQ(point->note, "n");
    EXPECT_EQ(point->when, absl::FromUnixSeconds(2));
  }
}

TEST(JsonDecoder, ReadsBareValuesAtTheRoot) {
  EXPECT_EQ(decode<std::int64_t>(" 7 "), 7);
  EXPECT_EQ(decode<std::string>(R"("a")"), "a");
  EXPECT_EQ(decode<absl::Time>(R"("x")"), absl::FromUnixSeconds(1));
  EXPECT_EQ(decode<std::optional<std::string>>("null").value(), std::nullopt);
  EXPECT_EQ(decode<std::vector<std::int64_t>>("[]"), std::vector<std::int64_t>());
  EXPECT_EQ((decode<std::vector<std::optional<std::int64_t>>>("[1,null,3]")),
            (std::vector<std::optional<std::int64_t>>{1, std::nullopt, 3}));
  EXPECT_EQ((decode<std::vector<std::vector<std::int64_t>>>("[[1],[],[2,3]]")),
            (std::vector<std::vector<std::int64_t>>{{1}, {}, {2, 3}}));
}

TEST(JsonDecoder, OptionalFieldsMayBeAbsentOrNull) {
  for (const std::string_view body : {R"({"x":1,"name":""})", R"({"x":1,"name":"","note":null,"when":null})"}) {
    const auto point = decode<Point>(body);
    ASSERT_TRUE(point) << body;
    EXPECT_EQ(point->note, std::nullopt);
    EXPECT_EQ(point->when, std::nullopt);
  }
}

TEST(JsonDecoder, ComparesKeysAfterTheirEscapesAreResolved) {
  EXPECT_EQ(decode<Point>(R"({"\u0078":5,"n\u0061me":"a"})")->x, 5);
  EXPECT_EQ(decode<Point>(R"({"\\u0078":5,"name":"a"})").error().kind, Kind::keyNotFound);
  EXPECT_EQ(decode<Point>(R"({"X":5,"name":"a"})").error().kind, Kind::keyNotFound);
  EXPECT_EQ(decode<Point>(R"({"x ":5,"name":"a"})").error().kind, Kind::keyNotFound);
  EXPECT_EQ(decode<Point>(R"({"x\u0000":5,"name":"a"})").error().kind, Kind::keyNotFound);
}

TEST(JsonDecoder, OfAKeyThatOccursTwiceTheLastOneCounts) {
  EXPECT_EQ(decode<Point>(R"({"x":1,"name":"a","x":2})")->x, 2);
  EXPECT_EQ(decode<Point>(R"({"x":1,"name":"a","\u0078":2})")->x, 2);
  EXPECT_EQ(decode<Point>(R"({"x":"one","name":[{"a":[1]}],"x":2,"name":"b"})")->name, "b");
  EXPECT_EQ(decode<Point>(R"({"x":1,"name":"a","note":"n","note":null})")->note, std::nullopt);
  EXPECT_EQ(decode<Point>(R"({"x":1,"name":"a","note":null,"note":"n"})")->note, "n");
  EXPECT_EQ(decode<Point>(R"({"x":1,"name":"a","x":"two"})").error().codingPath, "x");
  EXPECT_EQ(decode<Point>(R"({"x":1,"name":"a","x":null})").error().kind, Kind::valueNotFound);
}

TEST(JsonDecoder, AListThatFailedHalfWayGivesWayToALaterOne) {
  const auto path = decode<Path>(
      R"({"points":[{"x":1,"name":"a"},{"x":[[1],{"y":2}],"name":3},{"x":2}],"points":[{"x":9,"name":"z"}]})");
  ASSERT_TRUE(path) << path.error().description;
  ASSERT_EQ(path->points.size(), 1U);
  EXPECT_EQ(path->points[0].x, 9);
}

struct FailureCase {
  std::string_view body;
  Kind kind;
  std::string_view codingPath;
  std::string_view description;
};

TEST(JsonDecoder, SaysWhatFailedAndWhere) {
  const FailureCase cases[] = {
      {R"([])", Kind::typeMismatch, "", "expected an object, found an array"},
      {R"(null)", Kind::valueNotFound, "", "expected an object, found null"},
      {R"("a")", Kind::typeMismatch, "", "expected an object, found a string"},
      {R"(true)", Kind::typeMismatch, "", "expected an object, found a boolean"},
      {R"(1)", Kind::typeMismatch, "", "expected an object, found a number"},
      {R"({})", Kind::keyNotFound, "", "no value for the key points"},
      {R"({"points":null})", Kind::valueNotFound, "points", "expected an array, found null"},
      {R"({"points":{}})", Kind::typeMismatch, "points", "expected an array, found an object"},
      {R"({"points":[1]})", Kind::typeMismatch, "points[0]", "expected an object, found a number"},
      {R"({"points":[{"x":1,"name":"a"},{"x":1}]})", Kind::keyNotFound, "points[1]", "no value for the key name"},
      {R"({"points":[{"x":null,"name":"a"}]})", Kind::valueNotFound, "points[0].x", "expected an integer, found null"},
      {R"({"points":[{"x":"1","name":"a"}]})", Kind::typeMismatch, "points[0].x",
       "expected an integer, found a string"},
      {R"({"points":[{"x":true,"name":"a"}]})", Kind::typeMismatch, "points[0].x",
       "expected an integer, found a boolean"},
      {R"({"points":[{"x":7.5,"name":"a"}]})", Kind::dataCorrupted, "points[0].x", "not an integer of 64 bits: 7.5"},
      {R"({"points":[{"x":1,"name":7}]})", Kind::typeMismatch, "points[0].name", "expected a string, found a number"},
      {R"({"points":[{"x":1,"name":"a","note":[]}]})", Kind::typeMismatch, "points[0].note",
       "expected a string, found an array"},
      {R"({"points":[{"x":1,"name":"a","when":"xyz"}]})", Kind::dataCorrupted, "points[0].when", "no tally: xyz"},
      {R"({"points":[{"x":1,"name":"a","when":5}]})", Kind::typeMismatch, "points[0].when",
       "expected a date, found a number"},
      // The first field that fails by the order of the table, not by that of the body.
      {R"({"points":[{"when":5,"name":7}]})", Kind::keyNotFound, "points[0]", "no value for the key x"},
      {R"({"points":[{"when":5,"name":7,"x":1}]})", Kind::typeMismatch, "points[0].name",
       "expected a string, found a number"},
  };
  for (const FailureCase& expected : cases) {
    const auto path = decode<Path>(expected.body);
    ASSERT_FALSE(path) << expected.body;
    EXPECT_EQ(path.error().kind, expected.kind) << expected.body;
    EXPECT_EQ(path.error().codingPath, expected.codingPath) << expected.body;
    EXPECT_EQ(path.error().description, expected.description) << expected.body;
  }
}

TEST(JsonDecoder, HandsADateToTheStrategyAsItStands) {
  EXPECT_EQ(decode<absl::Time>(R"("")"), absl::UnixEpoch());
  EXPECT_EQ(decode<absl::Time>(R"("x\"\\\n")").error().description, "no tally: x\"\\\n");
  EXPECT_EQ(decode<absl::Time>(R"(" x")").error().description, "no tally:  x");
}

TEST(JsonDecoder, ReadsUuids) {
  const std::string_view text = "6f1c2b9e-0d7a-4d0c-9a57-3e1f5b8c2d40";
  EXPECT_EQ(decode<base::Uuid>(R"("6F1C2B9E-0D7A-4D0C-9A57-3E1F5B8C2D40")")->text(), text);
  EXPECT_EQ(decode<base::Uuid>(R"("\u0036F1C2B9E-0D7A-4D0C-9A57-3E1F5B8C2D40")")->text(), text);
  EXPECT_EQ(decode<base::Uuid>(R"("6F1C2B9E")").error(), (DecodingError{Kind::dataCorrupted, "", "not a UUID"}));
  EXPECT_EQ(decode<base::Uuid>("5").error().kind, Kind::typeMismatch);
}

struct IntegerCase {
  std::string_view text;
  std::optional<std::int64_t> value;
};

TEST(JsonDecoder, ReadsIntegersHoweverTheyAreWritten) {
  const IntegerCase cases[] = {
      {"7", 7},
      {"-7", -7},
      {"-0", 0},
      {"7.0", 7},
      {"7E+0", 7},
      {"70e-1", 7},
      {"0.7e1", 7},
      {"-0.0e-5", 0},
      {"0e99999999999999999999999999", 0},
      {"1e18", 1'000'000'000'000'000'000},
      {"9007199254740993", 9007199254740993},
      {"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
      {"-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
      {"7.5", std::nullopt},
      {"-0.1", std::nullopt},
      {"75e-1", std::nullopt},
      {"1e19", std::nullopt},
      {"-1e19", std::nullopt},
      {"9223372036854775808", std::nullopt},
      {"9223372036854775808.0", std::nullopt},
      {"-9223372036854775809", std::nullopt},
      {"-9223372036854775809.0", std::nullopt},
  };
  for (const auto& [text, value] : cases) {
    const auto decoded = decode<std::int64_t>(text);
    EXPECT_EQ(decoded ? std::optional(*decoded) : std::nullopt, value) << text;
    EXPECT_TRUE(decoded || decoded.error().kind == Kind::dataCorrupted) << text;
  }
}

TEST(JsonDecoder, ResolvesEscapesInTexts) {
  EXPECT_EQ(decode<std::string>(R"("\"\\\/\b\f\n\r\t")"), "\"\\/\b\f\n\r\t");
  EXPECT_EQ(decode<std::string>(R"("a\\u0041\u00e9\u07FF\uffff")"), "a\\u0041é\u07ff\uffff");
  EXPECT_EQ(decode<std::string>(R"("\ud83d\uDE00\udbff\udfff")"), "\U0001F600\U0010FFFF");
  EXPECT_EQ(decode<std::string>(R"("a\u0000b")"), std::string("a\0b", 3));
}

TEST(JsonDecoder, ReadsNothingBehindTheBody) {
  const std::string_view text = R"([{"x":1,"name":"a"},{"x":2,"name":"b"}])";
  for (const std::string_view behind : {",", "]", "\"", "1"}) {
    const std::string longer = std::string(text) + std::string(behind);
    EXPECT_EQ(decode<std::vector<Point>>(std::string_view(longer).substr(0, text.size()))->back().name, "b") << behind;
  }
}

TEST(JsonDecoder, FindsTheEndOfEachValue) {
  const std::string_view ignored[] = {R"("]}\"\\")", R"([[],{"a":[{}]},"]"])", R"({"}":{"\"":"{"}})", "-1.5e+3", "true",
                                      "[ ]"};
  for (const std::string_view value : ignored) {
    const std::string body = "[ {\"other\" :" + std::string(value) + ",\"x\":1 , \"more\": " + std::string(value) +
                             "\n,\"name\":\"a\"},{\"x\":2,\"name\":\"b\",\"other\":" + std::string(value) + "}]";
    const auto points = decode<std::vector<Point>>(body);
    ASSERT_TRUE(points) << body;
    ASSERT_EQ(points->size(), 2U) << body;
    EXPECT_EQ(points->front().name, "a");
    EXPECT_EQ(points->back().name, "b");
  }
}

TEST(JsonDecoder, ShortensAnAbsurdNumberInItsDescription) {
  const auto decoded = decode<std::int64_t>(std::string(100'000, '9'));
  ASSERT_FALSE(decoded);
  EXPECT_LT(decoded.error().description.size(), 100U);
}

}  // namespace
}  // namespace platform
