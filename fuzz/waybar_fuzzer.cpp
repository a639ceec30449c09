// Any view tree as a line for a status bar: one line of JSON whose texts hold no control characters except the
// tooltip's line ends, and whose markup is well formed.
#include <cstdint>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "any_tree.hpp"
#include "base/text/control_characters.hpp"
#include "host/status_line/status_line.hpp"
#include "protocol/view_tree/builders.hpp"
#include "require.hpp"

namespace {

using namespace protocol;
using fuzz::require;

Node treeOf(std::string_view bytes) {
  if (auto tree = fuzz::treeFromJson(bytes)) return *std::move(tree);
  const std::string title(bytes);
  return VStack({}, {HStack({}, {Text("09:05").role(TextRole::time), Text(title).role(TextRole::title)}), Text(title)});
}

/// Whether every "&" begins one of the five escapes and no "<" or ">" is left.
bool isMarkup(std::string_view text) {
  if (text.find_first_of("<>") != std::string_view::npos) return false;
  for (auto at = text.find('&'); at != std::string_view::npos; at = text.find('&', at + 1)) {
    const std::string_view rest = text.substr(at);
    if (!rest.starts_with("&amp;") && !rest.starts_with("&lt;") && !rest.starts_with("&gt;") &&
        !rest.starts_with("&quot;") && !rest.starts_with("&#39;")) {
      return false;
    }
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const auto language = static_cast<host::Language>(data[0] % 3);
  const auto holds = data[0] % 2 == 0 ? host::BoardHolds::day : host::BoardHolds::sentence;
  const Node tree = treeOf({reinterpret_cast<const char*>(data) + 1, size - 1});
  const std::string line = host::toWaybarJson(host::statusLine(tree, holds, language));
  require(line.find('\n') == std::string::npos);
  const auto json = nlohmann::json::parse(line);
  const std::string text = json.at("text");
  std::string tooltip = json.at("tooltip");
  std::erase(tooltip, '\n');
  require(!base::holdsControl(text) && !base::holdsControl(tooltip));
  require(isMarkup(text) && isMarkup(tooltip));
  require(json.at("class").is_array() && !json.at("class").empty());
  return 0;
}
