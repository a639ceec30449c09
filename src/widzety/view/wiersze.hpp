// The board's two kinds of row: a narrow leading column and beside it title, project and mark.
#pragma once

#include "platform/calendar/calendar.hpp"
#include "protocol/view_tree/builders.hpp"
#include "protocol/view_tree/widget_family.hpp"
#include "widzety/model/rekordy.hpp"
#include "widzety/texts/jezyk.hpp"

namespace widzety {

/// Size, time, zone and language of one rendering. Marks such as "jutro" depend on the time of rendering, not on the
/// entry's date.
struct ChwilaRysowania {
  protocol::WidgetFamily rozmiar;
  absl::Time teraz;
  platform::Calendar kalendarz;
  Jezyk jezyk;
};

/// "09:05 Narada zespołu", marked "jutro" when it is not today.
protocol::View wierszSpotkania(const SpotkaniePlanowane& spotkanie, const ChwilaRysowania& chwila);

/// "#12 Wysłać wniosek grantowy", marked "zaległe" when its deadline day has passed.
protocol::View wierszZadania(const ZadanieMoje& zadanie, const ChwilaRysowania& chwila);

}  // namespace widzety
