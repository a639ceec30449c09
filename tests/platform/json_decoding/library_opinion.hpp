// A second opinion on what is JSON: nlohmann's, where it has one that counts.
#pragma once

#include <string_view>

#include <nlohmann/json.hpp>

namespace platform {

enum class Opinion { isJson, isNotJson, none };

/// nlohmann skips a byte order mark, and it refuses numbers out of range and half a surrogate pair even where nobody
/// reads them: it has no say on such bodies. `out` is the document where it is JSON.
inline Opinion opinionOfALibrary(std::string_view body, nlohmann::json& out) {
  if (body.starts_with("\xEF") || body.find("\\u") != std::string_view::npos) return Opinion::none;
  try {
    out = nlohmann::json::parse(body);
    return Opinion::isJson;
  } catch (const nlohmann::json::parse_error&) {
    return Opinion::isNotJson;
  } catch (const nlohmann::json::out_of_range&) {
    return Opinion::none;
  }
}

}  // namespace platform
