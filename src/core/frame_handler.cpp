// The frame-based handler behind __try: what the compiler installs for every function that has one.
//
// A function with a __try keeps a registration node on its stack, linked from the thread block. The
// node points at the function's scope table, one entry a __try, and holds the innermost __try that
// is active. A dispatch walks outwards over the entries and asks their filters; an unwind walks
// them and runs the __finally blocks. Filters and blocks run in the frame of their function: they
// find it through ebp, which points just behind the node.

#include "core/exception_frame.h"

namespace vexrt {

namespace {

enum Disposition { continue_execution = 0, continue_search = 1 };

TryNode &try_node(void *node) {
    return *static_cast<TryNode *>(static_cast<ExceptionNode *>(node));
}

// The word in front of the node, where GetExceptionInformation() looks.
EXCEPTION_POINTERS *&pointers_of(TryNode &node) {
    return reinterpret_cast<EXCEPTION_POINTERS **>(&node)[-1];
}

void *frame_pointer(TryNode &node) { return &node + 1; }

} // namespace

extern "C" int vexrt_call_in_frame(void *code, void *frame);
extern "C" [[noreturn]] void vexrt_jump_into_frame(void *code, void *frame);

// Calls `code` with ebp set to `frame`, keeping the registers that a block may use freely.
__asm__(".text\n"
        "_vexrt_call_in_frame:\n\t"
        "pushl %ebp\n\t"
        "pushl %ebx\n\t"
        "pushl %esi\n\t"
        "pushl %edi\n\t"
        "movl 20(%esp), %eax\n\t"
        "movl 24(%esp), %ebp\n\t"
        "call *%eax\n\t"
        "popl %edi\n\t"
        "popl %esi\n\t"
        "popl %ebx\n\t"
        "popl %ebp\n\t"
        "ret\n"
        "_vexrt_jump_into_frame:\n\t"
        "movl 4(%esp), %eax\n\t"
        "movl 8(%esp), %ebp\n\t"
        "jmp *%eax\n\t" // the block takes its stack pointer from its frame
        "int3\n"
        // The system may clobber every register but ebp and esp while it unwinds.
        "_vexrt_global_unwind:\n\t"
        "pushl %ebp\n\t"
        "movl %esp, %ebp\n\t"
        "pushl %ebx\n\t"
        "pushl %esi\n\t"
        "pushl %edi\n\t"
        "pushl $0\n\t"
        "pushl 12(%ebp)\n\t"
        "pushl $1f\n\t"
        "pushl 8(%ebp)\n\t"
        "call *__imp__RtlUnwind@16\n"
        "1:\n\t"
        "popl %edi\n\t"
        "popl %esi\n\t"
        "popl %ebx\n\t"
        "popl %ebp\n\t"
        "ret\n"
        // The compilers' names and the exported ones are one underscore apart.
        ".globl __except_handler3, __local_unwind2\n"
        "__except_handler3:\n\t"
        "jmp ___except_handler3\n"
        "__local_unwind2:\n\t"
        "jmp ___local_unwind2\n");

extern "C" void vexrt_global_unwind(void *node, EXCEPTION_RECORD *record);

void unwind_to(ExceptionNode *node, EXCEPTION_RECORD *record) { vexrt_global_unwind(node, record); }

} // namespace vexrt

using namespace vexrt;

// Runs the __finally blocks inside `level`, innermost first. The level is stepped out before a
// block runs: a block that raises an exception itself is not entered twice.
extern "C" void __local_unwind2(void *frame, int level) {
    TryNode &node = try_node(frame);
    while (node.level != outermost_level && node.level != level) {
        const Scope &scope = node.scopes[node.level];
        node.level = scope.enclosing;
        if (!scope.filter) vexrt_call_in_frame(scope.block, frame_pointer(node));
    }
}

extern "C" int __except_handler3(EXCEPTION_RECORD *record, void *frame, CONTEXT *context, void *) {
    TryNode &node = try_node(frame);
    if (record->ExceptionFlags & (EXCEPTION_UNWINDING | EXCEPTION_EXIT_UNWIND)) {
        __local_unwind2(frame, outermost_level);
        return continue_search;
    }
    EXCEPTION_POINTERS pointers = {record, context};
    pointers_of(node) = &pointers;
    for (int level = node.level; level != outermost_level;) {
        const Scope &scope = node.scopes[level];
        if (scope.filter) {
            int verdict = vexrt_call_in_frame(scope.filter, frame_pointer(node));
            if (verdict < 0) return continue_execution;
            if (verdict > 0) {
                unwind_to(&node, record);
                __local_unwind2(frame, level);
                node.level = scope.enclosing;
                vexrt_jump_into_frame(scope.block, frame_pointer(node));
            }
        }
        level = scope.enclosing;
    }
    return continue_search;
}
