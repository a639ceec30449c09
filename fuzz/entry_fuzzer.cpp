// Any JSON as the entry that a host passes to `render`. An entry that is accepted reads back equal after it is written,
// and its view in each size is the same after its conversion to JSON and back.
#include <cstdint>
#include <string_view>

#include "base/json/json_text.hpp"
#include "platform/calendar/clock.hpp"
#include "protocol/view_tree/node_json.hpp"
#include "require.hpp"
#include "widzety/timeline/wpis_json.hpp"
#include "widzety/view/widok_dnia.hpp"

namespace {

using fuzz::require;
using Form = platform::EntryForm<widzety::Wpis>;

class OneMoment final : public platform::Clock {
 public:
  absl::Time now() const override { return absl::FromUnixSeconds(1'741'944'600); }
  platform::Calendar calendar() const override { return platform::Calendar(absl::UTCTimeZone()); }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto json = base::parseJson({reinterpret_cast<const char*>(data), size});
  if (!json) return 0;
  const auto entry = Form::fromJson(*json);
  if (!entry) {
    require(entry.error().find(": ") != std::string::npos);
    return 0;
  }
  const auto written = base::parseJson(Form::toJson(*entry));
  require(written && Form::fromJson(*written) == *entry);
  for (const auto family : {protocol::WidgetFamily::systemSmall, protocol::WidgetFamily::systemMedium}) {
    const widzety::WidokDnia view{.wpis = *entry, .rozmiar = [family] { return family; }};
    const protocol::Node tree = view.body(OneMoment(), widzety::Jezyk::en);
    const auto sent = base::parseJson(base::toText(protocol::toJson(tree)));
    require(sent && protocol::nodeFromJson(*sent) == tree);
  }
  return 0;
}
