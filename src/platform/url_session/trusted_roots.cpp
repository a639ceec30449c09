#include "platform/url_session/trusted_roots.hpp"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string_view>
#include <system_error>

#include <curl/curl.h>
#include <dirent.h>

#include "platform/url_session/ascii.hpp"

namespace platform {
namespace {

// "5ed36f99.0": eight lower-case hexadecimal digits and a number that tells equal hashes apart.
bool isHashName(std::string_view name) {
  constexpr std::size_t digits = 8;
  if (name.size() < digits + 2 || name[digits] != '.') return false;
  const auto isHex = [](char c) { return ascii::isDigit(c) || (c >= 'a' && c <= 'f'); };
  const std::string_view number = name.substr(digits + 1);
  return std::all_of(name.begin(), name.begin() + digits, isHex) &&
         std::all_of(number.begin(), number.end(), ascii::isDigit);
}

struct CloseDirectory {
  void operator()(DIR* directory) const { closedir(directory); }
};

std::size_t hashedCertificates(const std::string& folder) {
  std::size_t count = 0;
  // The directory's own stream: std::filesystem's iterator makes a path of each of some hundred entries.
  const std::unique_ptr<DIR, CloseDirectory> directory(opendir(folder.c_str()));
  if (!directory) return 0;
  while (const dirent* const entry = readdir(directory.get())) {
    if (isHashName(entry->d_name)) ++count;
  }
  return count;
}

std::size_t certificatesInFile(const std::string& file) {
  std::error_code error;
  const auto length = std::filesystem::file_size(file, error);
  if (error) return 0;
  std::string text(length, '\0');
  std::ifstream(file, std::ios::binary).read(text.data(), static_cast<std::streamsize>(text.size()));
  constexpr std::string_view beginning = "-----BEGIN CERTIFICATE-----";
  std::size_t count = 0;
  for (auto at = text.find(beginning); at != std::string::npos; at = text.find(beginning, at + beginning.size())) {
    ++count;
  }
  return count;
}

std::string textOrEmpty(const char* text) { return text == nullptr ? std::string() : std::string(text); }

}  // namespace

TrustedRoots TrustedRoots::choose(const std::string& chosenFile, const std::string& defaultFile,
                                  const std::string& defaultFolder) {
  const bool isChosen = !chosenFile.empty();
  const TrustedRoots withoutFolder{.file = chosenFile, .folder = {}};
  std::error_code error;
  if (isChosen && !std::filesystem::equivalent(chosenFile, defaultFile, error)) return withoutFolder;
  if (defaultFolder.empty()) return withoutFolder;
  const std::size_t inFolder = hashedCertificates(defaultFolder);
  const std::size_t inFile = certificatesInFile(defaultFile);
  // Who names a file does not ask for more than it holds.
  if (inFolder == 0 || inFolder < inFile || (isChosen && inFolder > inFile)) return withoutFolder;
  return {.file = {}, .folder = defaultFolder};
}

TrustedRoots TrustedRoots::choose(const std::string& chosenFile) {
  const curl_version_info_data* const library = curl_version_info(CURLVERSION_NOW);
  if (library->age < CURLVERSION_SEVENTH) return {.file = chosenFile, .folder = {}};  // it does not tell its defaults
  return choose(chosenFile, textOrEmpty(library->cainfo), textOrEmpty(library->capath));
}

}  // namespace platform
