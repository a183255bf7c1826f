// The expression as a tree, between parser and emitter.
#pragma once

#include "regex/array.h"
#include "regex/byte_set.h"

#include <stdint.h>

namespace vexrt {

enum class NodeKind : uint8_t {
    byte,           // value: the byte
    set,            // value: the index of the set
    assertion,      // value: the instruction
    back_reference, // value: the number of the subexpression
    group,          // value: the number; one child
    sequence,       // children in order
    choice,         // children: the alternatives
    repeat,         // one child, `least` to `most` times
};

using NodeIndex = uint32_t; // 0: none
constexpr uint16_t no_limit = 0xFFFF;

// `length` is that of every match, if they all have the same, and saturates.
struct Node {
    NodeKind kind;
    bool fixed;    // every match has one length
    bool nullable; // matches the empty string, wherever that is
    bool tracked;  // something of varying length follows within the parent
    uint16_t least, most;
    uint32_t value;
    NodeIndex first, last, next;
    uint32_t length;
    uint32_t words; // of its program; saturates
};

struct Tree {
    Array<Node> nodes;
    Array<ByteSet> sets;
    Array<uint32_t> group_parents; // by number, from 1 on; [0] is 0
    NodeIndex root = 0;
    bool has_assertions = false, has_back_references = false;

    Node &operator[](NodeIndex index) { return nodes[index]; }
};

} // namespace vexrt
