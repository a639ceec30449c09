#include "render/support/pinned_fonts.hpp"

#include <cstdlib>

#include <gtest/gtest.h>

namespace render::testing {
namespace {

class PinnedFonts final : public ::testing::Environment {
 public:
  void SetUp() override { pinFonts(); }
};

// The runner owns it.
[[maybe_unused]] const auto* const registered = ::testing::AddGlobalTestEnvironment(new PinnedFonts);

}  // namespace

void pinFonts() {
  setenv("FONTCONFIG_FILE", VAMBA_PINNED_FONTS, 1);
  // Fonts must not depend on the languages of the person who runs the tests.
  unsetenv("PANGO_LANGUAGE");
  unsetenv("LANGUAGE");
}

}  // namespace render::testing

#ifdef VAMBA_SANITIZED
// The font library keeps its data until the process ends, in a way that the leak checker reports.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig\n"; }
#endif
