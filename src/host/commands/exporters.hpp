// The formats in which one board is shown, each by its painter.
#pragma once

#include <expected>
#include <memory>
#include <string>

#include "host/commands/command_line.hpp"
#include "protocol/view_tree/node.hpp"

namespace render {
class PictureInPreparation;
}

namespace host {

/// A board on its way out, with what its formats say of it beside its view.
struct Board {
  protocol::Node view;  ///< as the extension answered it
  std::string title;    ///< the widget's name
  bool sample = false;  ///< a placeholder: pictures draw bars in place of its texts
};

/// One board in the line's format. Made before the board is asked for: what a picture needs loads meanwhile.
class Export {
 public:
  explicit Export(const CommandLine& line);
  ~Export();
  Export(const Export&) = delete;
  Export& operator=(const Export&) = delete;

  /// What to write, or why not, as a sentence without its full stop. Once.
  std::expected<std::string, std::string> drawn(const Board& board);

 private:
  const CommandLine& line_;
  std::unique_ptr<render::PictureInPreparation> picture_;  ///< where the format is one
};

}  // namespace host
