// A board that has nothing but one sentence below its header: the sentence is set larger, in the middle of the room.
#pragma once

#include "protocol/view_tree/node.hpp"
#include "render/layout/layout.hpp"

namespace render {

/// The sentence of such a board; null for any other tree.
const protocol::TextNode* sentenceOf(const protocol::Node& root);

/// The tree with its sentence, if it has one, in type that is read from a distance. Other trees stay as they are.
protocol::Node withLargerSentence(protocol::Node root);

/// Moves the sentence of a board that is laid out to the middle of the room below the header, in steps of `unit`.
void centreSentence(const protocol::Node& root, Board& board, double unit);

}  // namespace render
