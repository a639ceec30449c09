// A board with fewer rows, for a box that is too small for all of them. The line "i 2 więcej" counts the rows that are
// left out here too.
#pragma once

#include <optional>

#include <absl/functional/function_ref.h>

#include "host/texts/texts.hpp"
#include "protocol/view_tree/node.hpp"

namespace host {

/// The view without the last `count` rows of its lists (the children of the root that have an identity), as the
/// extension would have made it: the line "i %lld więcej" is raised by `count`, or added, and a divider that parts
/// nothing any more is left out. None where there are fewer rows.
std::optional<protocol::Node> withoutLastRows(protocol::Node view, int count);

/// The localised view with as few rows left out as it takes to fit; without any row where nothing fits.
protocol::Node fitted(const protocol::Node& view, Language language,
                      absl::FunctionRef<bool(const protocol::Node&)> fits);

}  // namespace host
