// Boards whose extension fails: they are never blank, each failure is reported once, the extension is started again,
// and many reloads leak nothing.
#include <csignal>

#include "desktop/end_to_end/x11_fixture.hpp"
#include "support/sanitized.hpp"

namespace end_to_end {
namespace {

using support::Bitmap;
using testing::HasSubstr;

class ExtensionOnX11 : public OnX11 {
 protected:
  /// Shows the board of a first load. The next load fails as the behaviour says.
  void startThenFail(const std::string& behaviour) {
    start();
    ASSERT_TRUE(boardsAre({firstPlace()}));
    ASSERT_TRUE(host().says(loaded)) << host().said();
    HostSettings well{.extension = VAMBA_FAKE_EXTENSION};
    board_ = exportedPicture(display(), well, {});
    ASSERT_TRUE(isShown());
    extension_.set("FAKE_EXTENSION", behaviour);
    focus(firstPlace());
    desktop().input().key(keys::f5);
  }
  testing::AssertionResult isShown() { return comesToShowInside(firstPlace(), board_, "x11-last-board"); }

  Bitmap board_;
};

TEST_F(ExtensionOnX11, SilentExtensionLeavesABoardThatSaysItIsLoading) {
  extension_.set("FAKE_EXTENSION", "hang");
  start();
  ASSERT_TRUE(boardsAre({firstPlace()}));
  // Bars of the loading board: more than one colour, away from its edges.
  EXPECT_TRUE(eventually([this] {
    const auto inner = shown({firstPlace().x + 20, firstPlace().y + 20, 300, 150});
    return std::ranges::count(inner.pixels, inner.pixels.back()) + 500 < std::ssize(inner.pixels);
  }));
  EXPECT_EQ(host().end(), 0) << "and it can be ended meanwhile";
}

struct Failing {
  const char* behaviour;
  const char* said;
};

class FailingExtensionOnX11 : public ExtensionOnX11, public testing::WithParamInterface<Failing> {};

TEST_P(FailingExtensionOnX11, LastBoardStaysAndTheExtensionIsStartedAgain) {
  startThenFail(GetParam().behaviour);
  EXPECT_TRUE(host().says(GetParam().said)) << host().said();
  EXPECT_TRUE(isShown());
  // It fails again after a pause, which is not reported again.
  const auto starts = extension_.processes().size();
  EXPECT_TRUE(eventually([&] { return extension_.processes().size() > starts; }));
  EXPECT_TRUE(isShown());
  extension_.set("FAKE_EXTENSION", "");
  EXPECT_TRUE(host().says(loaded, 2)) << host().said();
  const std::string said = host().said();
  EXPECT_EQ(said.find(GetParam().said), said.rfind(GetParam().said)) << said;
  EXPECT_TRUE(isShown());
}

INSTANTIATE_TEST_SUITE_P(Ways, FailingExtensionOnX11,
                         testing::Values(Failing{"exit 3", "ended with status 3"}, Failing{"crash", "signal 11"},
                                         Failing{"die mid-line", "not an answer"},
                                         Failing{"garbage", "not an answer"}));

TEST_F(ExtensionOnX11, HungExtensionThatIsKilledIsToldOfAndStartedAgain) {
  startThenFail("hang");
  ASSERT_TRUE(eventually([this] { return extension_.requests("timeline") == 2; }));
  EXPECT_TRUE(isShown());
  extension_.set("FAKE_EXTENSION", "");
  ::kill(extension_.processes().back(), SIGKILL);
  EXPECT_TRUE(host().says(loaded, 2)) << host().said();
  EXPECT_THAT(host().said(), HasSubstr("signal 9"));
}

TEST_F(ExtensionOnX11, StoppedExtensionIsKilledAfterItsDeadlineAndStartedAgainBehindTheLastBoard) {
  startThenFail("stop in render");
  ASSERT_TRUE(eventually([this] { return extension_.requests("timeline") == 2; }));
  const auto stopped = extension_.processes().back();
  EXPECT_TRUE(isShown());
  const char* const sentence = "the extension did not answer \"render\" in time";
  EXPECT_TRUE(host().says(sentence)) << host().said();
  extension_.set("FAKE_EXTENSION", "");
  EXPECT_TRUE(eventually([&] { return ::kill(stopped, 0) != 0; })) << "it is killed";
  EXPECT_TRUE(isShown());

  EXPECT_TRUE(host().says(loaded, 2)) << host().said();
  EXPECT_EQ(extension_.processes().size(), 3U) << "started once more";
  const std::string said = host().said();
  EXPECT_EQ(said.find(sentence), said.rfind(sentence)) << said;
  EXPECT_TRUE(isShown());
}

TEST_F(ExtensionOnX11, HungExtensionDoesNotKeepTheKeyboard) {
  startThenFail("hang");
  ASSERT_TRUE(eventually([this] { return extension_.requests("timeline") == 2; }));
  desktop().input().key(keys::left);
  auto moved = firstPlace();
  moved.x -= gap;
  EXPECT_TRUE(boardsAre({moved}));
}

TEST_F(ExtensionOnX11, CopiesOfEverySizeShareOneProcessAndOneTimeline) {
  place(
      display(),
      {placed(1, "systemSmall", "screen", "topLeft", 20, 20), placed(2, "systemMedium", "screen", "topLeft", 280, 20),
       placed(3, "systemLarge", "screen", "topRight", 20, 20), placed(4, "systemSmall", "screen", "topLeft", 20, 280)});
  start();
  ASSERT_TRUE(host().says(loaded)) << host().said();
  ASSERT_TRUE(eventually([this] { return areas().size() == 4; }));
  EXPECT_EQ(extension_.processes().size(), 1U);
  EXPECT_EQ(extension_.requests("timeline"), 1U);
  // For the placeholders and then for the timeline; copies of a size share a view.
  EXPECT_EQ(extension_.requests("render"), 6U);
  EXPECT_TRUE(eventually([this] { return ::kill(extension_.processes().back(), 0) != 0; })) << "it ends after the load";
}

TEST_F(ExtensionOnX11, ManyReloadsLeaveMemoryAndDescriptorsAsTheyWere) {
  start();
  ASSERT_TRUE(host().says(loaded));
  focus(firstPlace());
  std::size_t loads = 1;
  const auto reloadUntil = [&](std::size_t count) {
    while (loads < count) {
      // Each load gives another board, so that each is drawn.
      extension_.set("FAKE_EXTENSION_TITLE", "load " + std::to_string(loads));
      desktop().input().key(keys::f5);
      ASSERT_TRUE(host().says(loaded, ++loads)) << host().said();
    }
  };
  // This allows for caches of the toolkit and the allocator.
  reloadUntil(60);
  // The extension's descriptors are closed after it has ended.
  ASSERT_TRUE(eventually([this] { return ::kill(extension_.processes().back(), 0) != 0; }));
  const double memory = host().memory();
  const auto descriptors = host().descriptors();
  reloadUntil(360);
  EXPECT_TRUE(eventually([&] { return host().descriptors() <= descriptors; }))
      << host().descriptors() << " after " << descriptors;
  if (!support::sanitized) {
    EXPECT_LT(host().memory(), memory + 1) << "MB";
  }
  EXPECT_EQ(extension_.processes().size(), loads);
  EXPECT_EQ(extension_.requests("timeline"), loads);
}

}  // namespace
}  // namespace end_to_end
