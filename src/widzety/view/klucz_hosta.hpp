// The keys of the texts that the host localises itself.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "protocol/view_tree/node.hpp"
#include "widzety/texts/jezyk.hpp"

namespace widzety {

/// The key with its arguments, and the text in `jezyk` for a host that does not know the key.
protocol::LocalizedKey kluczHosta(std::string klucz, std::vector<std::int64_t> argumenty, Jezyk jezyk);

}  // namespace widzety
