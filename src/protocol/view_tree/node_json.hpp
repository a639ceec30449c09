// The view tree's JSON form, as it travels from the extension to its host (docs/protocol.md).
#pragma once

#include <expected>
#include <string>

#include <nlohmann/json.hpp>

#include "protocol/view_tree/node.hpp"

namespace protocol {

nlohmann::ordered_json toJson(const Node& node);

/// Reads a tree; keys that the form does not know are ignored. The error names the field at fault with its path
/// ("children[2].spacing: not a number"). The nesting is not limited here; `parseJson` limits it.
std::expected<Node, std::string> nodeFromJson(const nlohmann::json& json);

}  // namespace protocol
