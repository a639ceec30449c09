#include <gtest/gtest.h>

#include "render/picture/picture.hpp"
#include "render/support/golden_picture.hpp"
#include "render/support/sample_boards.hpp"

namespace render {
namespace {

using namespace render::testing;

BoardContent ordinaryDay() {
  return {.awaiting = 3,
          .meetings = {{"09:30", "Narada zespołu", "Pracownia", {}},
                       {"14:00", "Przegląd wdrożenia z zespołem", "Wdrożenie", "jutro"}},
          .tasks = {{12, "Wysłać wniosek grantowy", "Pracownia", "zaległe"},
                    {15, "Przejrzeć transkrypt narady", "Wdrożenie", {}},
                    {108, "Uzupełnić kosztorys", "Pracownia", {}},
                    {9, "Zamówić ławki", "Pracownia", {}}}};
}

BoardContent foreignLetters() {
  return {
      .awaiting = 12345,
      .meetings = {{"09:30", "שלום עולם: פגישה 12", "Ąžuolas", {}}, {"14:00", "مرحبا بالعالم", "<b>&amp;", "rytoj"}},
      .tasks = {{7, "Ünïçødé \x1b[31mred\x1b[0m\nsecond line", "\xff broken", {}}}};
}

TEST(PictureGoldens, LookAsReviewed) {
  const struct {
    std::string name;
    BoardContent content;
    Family family;
    PictureOptions options;
  } cases[] = {
      {"small_light", ordinaryDay(), Family::small, {.form = smallFamily}},
      {"medium_light", ordinaryDay(), Family::medium, {}},
      {"medium_dark", ordinaryDay(), Family::medium, {.appearance = Appearance::dark}},
      {"medium_light_at_1.5", ordinaryDay(), Family::medium, {.scale = 1.5}},
      {"large_dark", ordinaryDay(), Family::large, {.form = largeFamily, .appearance = Appearance::dark}},
      {"medium_fullest", sampleContent(State::full, Language::lithuanian, 12), Family::medium, {.scale = 2}},
      {"medium_overlong", sampleContent(State::overlongTitles, Language::polish, 1), Family::medium, {}},
      {"medium_foreign_letters", foreignLetters(), Family::medium, {}},
      {"small_error", sampleContent(State::error, Language::polish, 0), Family::small, {.form = smallFamily}},
      {"small_empty_dark",
       sampleContent(State::empty, Language::english, 3),
       Family::small,
       {.form = smallFamily, .appearance = Appearance::dark}},
      {"medium_redacted", ordinaryDay(), Family::medium, {.redaction = Redaction::placeholder}},
  };
  for (const auto& [name, content, family, options] : cases) {
    const auto file = drawPng(board(content, family), options);
    ASSERT_TRUE(file) << name;
    EXPECT_TRUE(matchesGoldenPicture("pictures/" + name + ".png", *file));
  }
}

}  // namespace
}  // namespace render
