// The board that is shown until the extension has answered for the first time.
#pragma once

#include "desktop/windows/board_picture.hpp"

namespace desktop {

/// A board with bars in place of texts.
BoardContent loadingBoard();

/// The board's background alone.
BoardContent emptyBoard();

}  // namespace desktop
