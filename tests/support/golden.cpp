#include "support/golden.hpp"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace support {

testing::AssertionResult matchesGolden(const std::string& name, std::string_view text) {
  const std::filesystem::path path = std::filesystem::path(VAMBA_GOLDENS) / name;
  const char* accept = std::getenv("VAMBA_ACCEPT_GOLDENS");
  if (accept != nullptr && std::string_view(accept) == "1") {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text;
    file.close();
    if (file) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "cannot write " << path;
  }
  std::ifstream file(path, std::ios::binary);
  std::ostringstream expected;
  if (file) expected << file.rdbuf();
  if (file && expected.str() == text) return testing::AssertionSuccess();
  return testing::AssertionFailure() << path << (file ? " holds\n" : " is missing\n") << expected.str()
                                     << "\nbut shown was\n"
                                     << text << "\nVAMBA_ACCEPT_GOLDENS=1 accepts it";
}

}  // namespace support
