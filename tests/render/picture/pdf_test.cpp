#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "render/picture/picture.hpp"
#include "render/support/pdf_text.hpp"
#include "render/support/sample_boards.hpp"

namespace render {
namespace {

using namespace render::testing;
using ::testing::AllOf;
using ::testing::HasSubstr;

TEST(Pdf, TextCanBeSelected) {
  const auto tree = board(sampleContent(State::full, Language::polish, 12), Family::medium);
  const auto file = drawPdf(tree, {.appearance = Appearance::dark});
  ASSERT_TRUE(file);
  EXPECT_TRUE(file->starts_with("%PDF-"));
  EXPECT_THAT(pdfText(*file),
              AllOf(HasSubstr("Vamba"), HasSubstr("12 do decyzji"), HasSubstr("09:05 Narada zespołu"),
                    HasSubstr("Żółta gęś: przegląd źródeł"), HasSubstr("zaległe"), HasSubstr("i 3 więcej")));
}

TEST(Pdf, IsTheSameBytesForTheSameInputWhateverTheTime) {
  const auto tree = board(sampleContent(State::full, Language::lithuanian, 1), Family::large);
  const PictureOptions options{.form = largeFamily, .title = "Vamba"};
  const auto once = drawPdf(tree, options);
  ASSERT_TRUE(once);
  EXPECT_TRUE(*once == *drawPdf(tree, options));
  EXPECT_TRUE(once->contains("/Title (Vamba)"));
  EXPECT_FALSE(once->contains("Date")) << "a date would make tomorrow's file another";
}

}  // namespace
}  // namespace render
