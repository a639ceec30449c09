#include "platform/languages/preferred_languages.hpp"

#include <cstdlib>
#include <initializer_list>

namespace platform {
namespace {

std::string_view firstSet(std::initializer_list<const char*> names) {
  for (const char* name : names) {
    const char* value = std::getenv(name);
    if (value != nullptr && *value != '\0') return value;
  }
  return {};
}

std::string_view withoutEncodingAndModifier(std::string_view locale) {
  return locale.substr(0, locale.find_first_of(".@"));
}

}  // namespace

std::vector<std::string> preferredLanguages() {
  std::vector<std::string> languages;
  const auto add = [&languages](std::string_view locale) {
    const auto language = withoutEncodingAndModifier(locale);
    if (!language.empty() && language != "C" && language != "POSIX") languages.emplace_back(language);
  };
  // Only the first of the variables is a list.
  std::string_view rest = firstSet({"LANGUAGE"});
  if (rest.empty()) add(firstSet({"LC_ALL", "LC_MESSAGES", "LANG"}));
  while (!rest.empty()) {
    const auto end = rest.find(':');
    add(rest.substr(0, end));
    rest = end == std::string_view::npos ? std::string_view{} : rest.substr(end + 1);
  }
  return languages;
}

std::string primarySubtag(std::string_view tag) {
  constexpr std::string_view separators = "-_";
  const auto begin = tag.find_first_not_of(separators);
  if (begin == std::string_view::npos) return {};
  std::string piece(tag.substr(begin, tag.find_first_of(separators, begin) - begin));
  for (char& c : piece) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return piece;
}

}  // namespace platform
