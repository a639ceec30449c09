// Text inside XML and the markup that is read like it.
#pragma once

#include <string>
#include <string_view>

namespace base {

/// `text` with the five characters that XML gives a meaning escaped, for content and for attributes in either quotes:
/// `a < "b"` gives `a &lt; &quot;b&quot;`. Characters that XML cannot represent stay: filter them first.
std::string escapedForXml(std::string_view text);

}  // namespace base
