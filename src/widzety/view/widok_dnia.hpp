// The day widget's view: one entry laid out as the board, for the size in which it is drawn.
#pragma once

#include "platform/calendar/clock.hpp"
#include "platform/widget_kit/static_configuration.hpp"
#include "protocol/view_tree/node.hpp"
#include "widzety/texts/jezyk.hpp"
#include "widzety/timeline/wpis.hpp"

namespace widzety {

struct WidokDnia {
  Wpis wpis;
  platform::FamilyEnvironment rozmiar;  ///< read when the view is rendered

  /// The board at the clock's moment and in its zone.
  protocol::Node body(const platform::Clock& zegar, Jezyk jezyk = biezacyJezyk()) const;
};

}  // namespace widzety
