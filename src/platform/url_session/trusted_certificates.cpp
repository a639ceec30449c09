#include "platform/url_session/trusted_certificates.hpp"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>

#include <curl/curl.h>
#include <dirent.h>

#include "platform/url_session/ascii.hpp"

namespace platform {
namespace {

// "5ed36f99.0": eight lower-case hexadecimal digits, and a number that tells equal hashes apart.
bool isHashedName(std::string_view name) {
  constexpr std::size_t digits = 8;
  if (name.size() < digits + 2 || name[digits] != '.') return false;
  const auto isHexadecimal = [](char c) { return ascii::isDigit(c) || (c >= 'a' && c <= 'f'); };
  return std::ranges::all_of(name.substr(0, digits), isHexadecimal) &&
         std::ranges::all_of(name.substr(digits + 1), ascii::isDigit);
}

struct CloseDirectory {
  void operator()(DIR* directory) const { closedir(directory); }
};

bool holdsHashedNames(const std::string& folder) {
  const std::unique_ptr<DIR, CloseDirectory> directory(opendir(folder.c_str()));
  if (!directory) return false;
  while (const dirent* const entry = readdir(directory.get())) {
    if (isHashedName(entry->d_name)) return true;
  }
  return false;
}

}  // namespace

TrustedCertificates TrustedCertificates::choose(const std::string& chosenFile, const std::string& hashedFolder) {
  if (!chosenFile.empty()) {
    std::error_code error;
    return {.file = std::filesystem::is_regular_file(chosenFile, error) ? chosenFile : "/dev/null", .folder = {}};
  }
  if (!hashedFolder.empty() && holdsHashedNames(hashedFolder)) return {.file = {}, .folder = hashedFolder};
  return {};
}

std::string defaultCertificateFolder() {
  const curl_version_info_data* const library = curl_version_info(CURLVERSION_NOW);
  const bool tells = library->age >= CURLVERSION_SEVENTH && library->capath != nullptr;
  return tells ? library->capath : std::string();
}

}  // namespace platform
