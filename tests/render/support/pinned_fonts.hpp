// Which fonts the tests draw with: Inter and DejaVu alone, whatever else the machine has and prefers.
#pragma once

namespace render::testing {

/// Tells the font library before its first use. Linked-in tests do so by themselves when they start.
void pinFonts();

}  // namespace render::testing
