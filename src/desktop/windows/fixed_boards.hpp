// Boards that the host makes itself: one for the time until the extension has answered, and an empty one behind the
// undo button.
#pragma once

#include "desktop/windows/board_picture.hpp"

namespace desktop {

/// A board with bars in place of texts.
BoardContent loadingBoard();

/// The board's background alone.
BoardContent emptyBoard();

}  // namespace desktop
