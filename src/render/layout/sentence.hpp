// A board with only one sentence below its header, such as an error: the sentence is enlarged and centred.
#pragma once

#include "protocol/view_tree/node.hpp"
#include "render/layout/layout.hpp"

namespace render {

/// The sentence of such a board; null for other trees.
const protocol::TextNode* sentenceOf(const protocol::Node& root);

/// The tree with its sentence, if it has one, in larger type. Other trees are returned unchanged.
protocol::Node withLargerSentence(protocol::Node root);

/// Moves the sentence of a board that is laid out to the middle of the room below the header, by a multiple of `unit`.
void centreSentence(const protocol::Node& root, Board& board, double unit);

}  // namespace render
