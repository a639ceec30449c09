#include "protocol/view_tree/localized_key.hpp"

#include <limits>

#include <gtest/gtest.h>

namespace protocol {
namespace {

TEST(LocalizedKey, HasWordingsInThreeLanguages) {
  EXPECT_EQ(wordingOf("%lld do decyzji", "en"), "%lld to decide");
  EXPECT_EQ(wordingOf("%lld do decyzji", "lt"), "Spręsti: %lld");
  EXPECT_EQ(wordingOf("%lld do decyzji", "pl"), "%lld do decyzji");
  EXPECT_EQ(wordingOf("%lld do decyzji", "de"), "%lld do decyzji");
  EXPECT_EQ(wordingOf("something else", "en"), std::nullopt);
}

TEST(LocalizedKey, ShowsTheSendersTextWhereThereIsOne) {
  EXPECT_EQ(asWritten({"new key %lld", {3}, "three of the new"}), "three of the new");
  EXPECT_EQ(asWritten({"new key %lld", {3}, std::nullopt}), "new key 3");
  EXPECT_EQ(asWritten(TextNode{.content = LocalizedKey{"new key %lld", {3}, std::nullopt}}), "new key 3");
  EXPECT_EQ(asWritten(TextNode{.content = Verbatim{"%lld as it stands"}}), "%lld as it stands");
}

TEST(LocalizedKey, TakesItsArgumentsInOrder) {
  struct Case {
    LocalizedKey key;
    std::string text;
  };
  const Case cases[] = {
      {{"Vamba", {}}, "Vamba"},
      {{"", {}}, ""},
      {{"%lld do decyzji", {3}}, "3 do decyzji"},
      {{"%lld of %lld", {1, -2}}, "1 of -2"},
      {{"%lld%lld", {12, 3}}, "123"},
      {{"%lld", {std::numeric_limits<std::int64_t>::min()}}, "-9223372036854775808"},
      {{"%lld of %lld", {1}}, "1 of %lld"},
      {{"%lld", {}}, "%lld"},
      {{"none", {1, 2}}, "none"},
      {{"100% %d %ll", {1}}, "100% %d %ll"},
      {{"%%lld", {7}}, "%7"},
  };
  for (const auto& [key, text] : cases) EXPECT_EQ(asWritten(key), text) << key.key;
}

}  // namespace
}  // namespace protocol
