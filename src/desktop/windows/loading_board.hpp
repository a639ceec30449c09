// A board for the moment before the extension has answered anything at all, and for as long as it does not.
#pragma once

#include "desktop/windows/board_picture.hpp"

namespace desktop {

/// Bars where a day's texts will stand.
BoardContent loadingBoard();

}  // namespace desktop
