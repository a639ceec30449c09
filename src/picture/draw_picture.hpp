// Draws a board as a picture file in the format and appearance that the command line asks for.
#pragma once

#include "host/commands/draw.hpp"

namespace picture {

host::DrawnBoard drawPicture(const host::Board& board, const host::CommandLine& line);

}  // namespace picture
