#include "protocol/view_tree/node_json.hpp"

#include <gtest/gtest.h>

#include "protocol/view_tree/builders.hpp"

namespace protocol {
namespace {

using nlohmann::json;

Node sample() {
  return VStack({.spacing = 6},
                {HStack({.alignment = VerticalAlignment::center, .spacing = 6},
                        {Text(key("Vamba")).font(TextStyle::headline), Spacer(),
                         Text(key("%lld do decyzji", 3))
                             .font(TextStyle::caption2)
                             .weight(FontWeight::medium)
                             .padding({.top = 2, .leading = 6, .bottom = 2, .trailing = 6})
                             .background({.fill = ForegroundStyle::tint, .opacity = 0.15})}),
                 Divider().padding({.top = 1, .bottom = 1}),
                 HStack({.alignment = VerticalAlignment::firstTextBaseline},
                        {Text("09:05").monospacedDigit().foregroundStyle(ForegroundStyle::tint).lineLimit(1)})
                     .id("row")})
      .padding(12)
      .containerBackground(ContainerBackground::background);
}

TEST(NodeJson, WritesTheFormOfTheProtocol) {
  EXPECT_EQ(toJson(sample()).dump(),
            R"({"type":"vstack","alignment":"leading","spacing":6,"children":[)"
            R"({"type":"hstack","alignment":"center","spacing":6,"children":[)"
            R"({"type":"text","key":"Vamba","arguments":[],"font":"headline"},)"
            R"({"type":"spacer","minLength":0},)"
            R"({"type":"text","key":"%lld do decyzji","arguments":[3],"font":"caption2","weight":"medium",)"
            R"("padding":{"top":2,"leading":6,"bottom":2,"trailing":6},)"
            R"("background":{"shape":"capsule","corners":"continuous","fill":"tint","opacity":0.15}}]},)"
            R"({"type":"divider","padding":{"top":1,"leading":0,"bottom":1,"trailing":0}},)"
            R"({"type":"hstack","alignment":"firstTextBaseline","children":[)"
            R"({"type":"text","text":"09:05","font":"caption","monospacedDigits":true,"style":"tint","lineLimit":1}],)"
            R"("id":"row"}],)"
            R"("padding":{"top":12,"leading":12,"bottom":12,"trailing":12},"containerBackground":"background"})");
}

TEST(NodeJson, ReadsBackWhatItWrote) { EXPECT_EQ(nodeFromJson(json::parse(toJson(sample()).dump())), sample()); }

TEST(NodeJson, CarriesTheSendersTextBesideAKey) {
  const Node node{.kind = TextNode{.content = LocalizedKey{"%lld do decyzji", {3}, "3 to decide"}}};
  EXPECT_EQ(toJson(node).dump(),
            R"({"type":"text","key":"%lld do decyzji","arguments":[3],"value":"3 to decide","font":"caption"})");
  EXPECT_EQ(nodeFromJson(json::parse(toJson(node).dump())), node);
}

TEST(NodeJson, IgnoresKeysItDoesNotKnowAndReadsNullAsAbsent) {
  const auto read = nodeFromJson(json::parse(
      R"({"type":"vstack","shadow":3,"spacing":null,"padding":{"top":1,"inner":2},"children":[{"type":"divider"}]})"));
  ASSERT_TRUE(read.has_value());
  const Node expected = VStack({}, {Divider()}).padding({.top = 1});
  EXPECT_EQ(*read, expected);
}

struct Refusal {
  const char* form;
  const char* error;
};

class NodeJsonRefuses : public testing::TestWithParam<Refusal> {};

TEST_P(NodeJsonRefuses, AndNamesTheField) {
  const auto read = nodeFromJson(json::parse(GetParam().form));
  ASSERT_FALSE(read.has_value());
  EXPECT_EQ(read.error(), GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, NodeJsonRefuses,
    testing::Values(
        Refusal{"[]", "view: not an object"}, Refusal{"{}", "type: not a known node"},
        Refusal{R"({"type":"image"})", "type: not a known node"}, Refusal{R"({"type":1})", "type: not a text"},
        Refusal{R"({"type":"vstack"})", "children: missing"},
        Refusal{R"({"type":"vstack","children":[{"type":"divider"},3]})", "children[1]: not an object"},
        Refusal{R"({"type":"hstack","alignment":"bottom","children":[]})", "alignment: not a known value"},
        Refusal{R"({"type":"hstack","spacing":"6","children":[]})", "spacing: not a number"},
        Refusal{R"({"type":"text"})", "text: neither text nor key"},
        Refusal{R"({"type":"text","key":"%lld","arguments":[1.5]})", "arguments: not an integer of 64 bits"},
        Refusal{R"({"type":"text","key":"%lld","arguments":[9223372036854775808]})",
                "arguments: not an integer of 64 bits"},
        Refusal{R"({"type":"text","text":"a","font":"title"})", "font: not a known value"},
        Refusal{R"({"type":"text","text":"a","lineLimit":0})", "lineLimit: not a number of lines"},
        Refusal{R"({"type":"text","text":"a","monospacedDigits":1})", "monospacedDigits: not true or false"},
        Refusal{R"({"type":"spacer","background":{"shape":"disc"}})", "background.shape: not a known value"},
        Refusal{R"({"type":"spacer","padding":{"top":true}})", "padding.top: not a number"}));

}  // namespace
}  // namespace protocol
