// Makes tests draw with Inter and DejaVu only, whatever other fonts are installed.
#pragma once

namespace render::testing {

/// Configures the font library, before its first use. Test programs that link this do so when they start.
void pinFonts();

}  // namespace render::testing
