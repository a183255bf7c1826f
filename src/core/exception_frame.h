// The registration node of the frame-based exception handler, as compilers lay it on the stack.
#pragma once

#include "platform/kernel32.h"

namespace vexrt {

struct Scope {
    int enclosing; // -1: none
    void *filter;  // null: a __finally
    void *block;
};

constexpr int outermost_level = -1;

// What the chain in the thread block links: every node begins with these two words.
struct ExceptionNode {
    ExceptionNode *previous;
    void *handler;
};

// The node of a function whose handler is ours.
struct TryNode : ExceptionNode {
    const Scope *scopes;
    int level; // the innermost __try that is active
};
static_assert(sizeof(TryNode) == 16);

// The innermost node of the calling thread, first word of the thread block.
inline ExceptionNode *innermost_node() {
    return *reinterpret_cast<ExceptionNode *volatile __attribute__((address_space(257))) *>(0);
}

// Unwinds to `node`: every frame inside it is told to run its __finally blocks.
void unwind_to(ExceptionNode *node, EXCEPTION_RECORD *record);

} // namespace vexrt
