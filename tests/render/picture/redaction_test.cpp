#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "render/picture/picture.hpp"
#include "render/support/markup.hpp"
#include "render/support/pdf_text.hpp"
#include "render/support/sample_boards.hpp"

namespace render {
namespace {

using namespace render::testing;
using ::testing::HasSubstr;
using ::testing::Not;

const PictureOptions redacted{.redaction = Redaction::placeholder, .title = "Vamba — spotkania i zadania"};

protocol::Node sample() { return board(sampleContent(State::full, Language::polish, 3), Family::medium); }

TEST(RedactedSvg, HoldsBarsInPlaceOfEveryText) {
  const auto file = drawSvg(sample(), redacted);
  ASSERT_TRUE(file);
  const auto svg = readMarkup(*file);
  EXPECT_TRUE(svg.named("text").empty());
  EXPECT_TRUE(svg.named("desc").empty());
  EXPECT_THAT(*file, Not(HasSubstr("Narada")));
  // Background, edge and badge, and a bar for each text of the plain drawing.
  EXPECT_EQ(svg.named("path").size(), 3 + readMarkup(*drawSvg(sample(), {})).named("text").size());
}

TEST(RedactedPdf, HoldsNoText) {
  const auto file = drawPdf(sample(), redacted);
  ASSERT_TRUE(file);
  EXPECT_THAT(pdfText(*file), ::testing::MatchesRegex("[ \n\f]*"));
}

}  // namespace
}  // namespace render
