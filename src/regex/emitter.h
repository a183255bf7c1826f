// The tree's program.
#pragma once

#include "regex/tree.h"

namespace vexrt {

// Appends the program of the tree, without the end instructions. False without memory.
bool emit_tree(Tree &tree, Array<uint32_t> &strip);

// Derives a node's `fixed`, `length`, `nullable` and `words` from its children's, and says which of
// these are tracked.
void measure(Tree &tree, NodeIndex index);

} // namespace vexrt
