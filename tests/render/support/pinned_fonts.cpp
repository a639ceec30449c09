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
  // Fonts must not change with the languages of whoever runs the tests.
  unsetenv("PANGO_LANGUAGE");
  unsetenv("LANGUAGE");
}

}  // namespace render::testing

#ifdef __SANITIZE_ADDRESS__
// The font library keeps what it has read until the process ends, where the leak checker does not find it.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:libfontconfig\n"; }
#endif
