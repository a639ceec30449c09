#include "support/golden.hpp"

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "support/file_content.hpp"

namespace support {
namespace {

std::filesystem::path fileOf(const std::string& name) { return std::filesystem::path(VAMBA_GOLDENS) / name; }

}  // namespace

testing::AssertionResult matchesGolden(const std::string& name, std::string_view text) {
  if (const auto accepted = acceptedGolden(name, text)) return *accepted;
  const bool exists = std::filesystem::exists(fileOf(name));
  const std::string expected = golden(name);
  if (exists && expected == text) return testing::AssertionSuccess();
  return testing::AssertionFailure() << fileOf(name) << (exists ? " holds\n" : " is missing\n") << expected
                                     << "\nbut shown was\n"
                                     << text << "\nVAMBA_ACCEPT_GOLDENS=1 accepts it";
}

std::string golden(const std::string& name) { return contentOf(fileOf(name)); }

std::optional<testing::AssertionResult> acceptedGolden(const std::string& name, std::string_view content) {
  const char* const accept = std::getenv("VAMBA_ACCEPT_GOLDENS");
  if (accept == nullptr || std::string_view(accept) != "1") return std::nullopt;
  const auto path = fileOf(name);
  std::filesystem::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << content;
  file.close();
  if (file) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "cannot write " << path;
}

}  // namespace support
