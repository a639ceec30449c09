// View trees out of a fuzzer's bytes.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/json/json_text.hpp"
#include "protocol/view_tree/builders.hpp"
#include "protocol/view_tree/node_json.hpp"

namespace fuzz {

/// The tree that the bytes are as JSON, read as the host reads an answer; absent for any others.
inline std::optional<protocol::Node> treeFromJson(std::string_view bytes) {
  if (const auto json = base::parseJson(bytes)) {
    if (auto tree = protocol::nodeFromJson(*json)) return *std::move(tree);
  }
  return std::nullopt;
}

/// The same, or else a board with the bytes as its titles.
inline protocol::Node treeOrTitles(std::string_view bytes) {
  using namespace protocol;
  if (auto tree = treeFromJson(bytes)) return *std::move(tree);
  const std::string title(bytes);
  return VStack({}, {HStack({}, {Text(title).lineLimit(1), Spacer(), Text(title)}), Text(title)}).padding(12);
}

}  // namespace fuzz
