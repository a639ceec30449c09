#include "render/support/golden_picture.hpp"

#include "support/golden.hpp"

namespace render::testing {

::testing::AssertionResult matchesGoldenPicture(const std::string& name, const std::string& file) {
  if (const auto accepted = support::acceptedGolden(name, file)) return *accepted;
  return support::showsTheSame(readPng(file), readPng(support::golden(name)), name.substr(0, name.rfind('.')))
         << "; VAMBA_ACCEPT_GOLDENS=1 accepts it";
}

}  // namespace render::testing
