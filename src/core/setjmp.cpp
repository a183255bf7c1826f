// Non-local jumps. A jump unwinds the exception frames between its two ends, so that their
// __finally blocks run, then those __try statements of the target function that it leaves, and then
// restores the registers that a call preserves.
//
// How to leave the target's own __try statements only its compiler knows. When a function with a
// __try calls _setjmp3, the compiler passes a routine of its own and the number of the active
// __try; for clang the routine is in the library that programs link
// (crt/helpers/longjmp_unwind.cpp).

#include "core/exception_frame.h"

#include <setjmp.h>
#include <stddef.h>

namespace vexrt {

namespace {

constexpr int most_values = 6; // of the compiler's, passed and kept

struct Jump {
    int ebp, ebx, edi, esi, esp, eip;
    ExceptionNode *node; // the innermost exception frame, of the saving function or outside it
    int level;           // the active __try of that frame
    int unused;
    void(__stdcall *unwind)(int *env); // leaves the __try statements inside `level`; may be null
    int data[most_values];
};
static_assert(sizeof(Jump) == sizeof(jmp_buf));
static_assert(offsetof(Jump, esp) == 16 && offsetof(Jump, eip) == 20);

} // namespace

// The rest of _setjmp3: `further` are the arguments behind `count`.
extern "C" void vexrt_save_frames(Jump *jump, int count, const int *further) {
    jump->node = innermost_node();
    jump->level = count > 1 ? further[1] : outermost_level;
    jump->unwind = count > 0 ? reinterpret_cast<decltype(jump->unwind)>(further[0]) : nullptr;
    for (int i = 0; i < most_values && i + 2 < count; ++i) jump->data[i] = further[i + 2];
}

// The first half of longjmp.
extern "C" void vexrt_leave_frames(Jump *jump) {
    if (jump->node != innermost_node()) unwind_to(jump->node, nullptr);
    if (jump->unwind) jump->unwind(&jump->ebp);
}

// The saved stack pointer is that of the caller after the return.
__asm__(".text\n"
        ".globl __setjmp3, _longjmp\n"
        "__setjmp3:\n\t"
        "movl 4(%esp), %eax\n\t"
        "movl %ebp, (%eax)\n\t"
        "movl %ebx, 4(%eax)\n\t"
        "movl %edi, 8(%eax)\n\t"
        "movl %esi, 12(%eax)\n\t"
        "leal 4(%esp), %ecx\n\t"
        "movl %ecx, 16(%eax)\n\t"
        "movl (%esp), %ecx\n\t"
        "movl %ecx, 20(%eax)\n\t"
        "leal 12(%esp), %ecx\n\t"
        "pushl %ecx\n\t"
        "pushl 12(%esp)\n\t"
        "pushl %eax\n\t"
        "call _vexrt_save_frames\n\t"
        "addl $12, %esp\n\t"
        "xorl %eax, %eax\n\t"
        "ret\n"
        "_longjmp:\n\t"
        "pushl 4(%esp)\n\t"
        "call _vexrt_leave_frames\n\t"
        "movl 8(%esp), %edx\n\t"
        "movl 12(%esp), %eax\n\t"
        "testl %eax, %eax\n\t"
        "jnz 1f\n\t"
        "incl %eax\n"
        "1:\n\t"
        "movl (%edx), %ebp\n\t"
        "movl 4(%edx), %ebx\n\t"
        "movl 8(%edx), %edi\n\t"
        "movl 12(%edx), %esi\n\t"
        "movl 16(%edx), %esp\n\t"
        "jmp *20(%edx)\n");

} // namespace vexrt
