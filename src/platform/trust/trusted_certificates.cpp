#include "platform/trust/trusted_certificates.hpp"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace platform {
namespace {

// "5ed36f99.0": eight lower-case hexadecimal digits, and a number that tells equal hashes apart.
bool isHashedName(std::string_view name) {
  constexpr std::size_t digits = 8;
  if (name.size() < digits + 2 || name[digits] != '.') return false;
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  const auto isHexadecimal = [&](char c) { return isDigit(c) || (c >= 'a' && c <= 'f'); };
  return std::ranges::all_of(name.substr(0, digits), isHexadecimal) &&
         std::ranges::all_of(name.substr(digits + 1), isDigit);
}

}  // namespace

std::size_t hashedCertificatesIn(const std::filesystem::path& folder) {
  std::error_code error;
  std::size_t found = 0;
  std::filesystem::directory_iterator each(folder, error);
  // Not a range-based for, which throws where the folder cannot be read on.
  for (; !error && each != std::filesystem::directory_iterator(); each.increment(error)) {
    if (isHashedName(each->path().filename().native())) ++found;
  }
  return found;
}

TrustedCertificates TrustedCertificates::choose(const std::string& chosenFile, const std::string& hashedFolder) {
  if (!chosenFile.empty()) {
    std::error_code error;
    return {.file = std::filesystem::is_regular_file(chosenFile, error) ? chosenFile : "/dev/null", .folder = {}};
  }
  if (hashedCertificatesIn(hashedFolder) > 0) return {.file = {}, .folder = hashedFolder};
  return {};
}

}  // namespace platform
