// Conversions from the top of the x87 register stack to integers, for generated code. The operand
// is always popped; the result is in eax, or in edx and eax. ecx is kept by all of them, edx by
// those of up to 32 bits.
//
// The conversion truncates: the control word's rounding field is set so for one store. The checked
// forms test the operand as it is, before truncation; outside the range, and for a NaN, they raise
// FE_INVALID and give a fixed value.

#include <fenv.h>

// Stores st(0) as an integer of the size that the letter says at the top of the stack: 8 bytes of
// room, then two control words.
#define VEXRT_TRUNCATING_STORE(letter)                                                             \
    "subl $12, %esp\n\t"                                                                           \
    "fnstcw 8(%esp)\n\t"                                                                           \
    "movzwl 8(%esp), %eax\n\t"                                                                     \
    "orl $0x0C00, %eax\n\t"                                                                        \
    "movw %ax, 10(%esp)\n\t"                                                                       \
    "fldcw 10(%esp)\n\t"                                                                           \
    "fistp" letter " (%esp)\n\t"                                                                   \
    "fldcw 8(%esp)\n\t"

// Jumps to 9 unless lower <= st(0) < upper; the bounds are the bits of floats.
#define VEXRT_CHECK_RANGE(lower, upper)                                                            \
    "pushl $" lower "\n\t"                                                                         \
    "fcoms (%esp)\n\t"                                                                             \
    "fnstsw %ax\n\t"                                                                               \
    "sahf\n\t"                                                                                     \
    "leal 4(%esp), %esp\n\t"                                                                       \
    "jp 9f\n\t"                                                                                    \
    "jb 9f\n\t"                                                                                    \
    "pushl $" upper "\n\t"                                                                         \
    "fcoms (%esp)\n\t"                                                                             \
    "fnstsw %ax\n\t"                                                                               \
    "sahf\n\t"                                                                                     \
    "leal 4(%esp), %esp\n\t"                                                                       \
    "jae 9f\n\t"

#define VEXRT_FAIL                                                                                 \
    "9:\n\t"                                                                                       \
    "fstp %st(0)\n\t"                                                                              \
    "pushl $1\n\t" /* FE_INVALID */                                                                \
    "call _feraiseexcept\n\t"                                                                      \
    "addl $4, %esp\n\t"

// A checked conversion to at most 32 bits.
#define VEXRT_CHECKED(name, letter, lower, upper, failure)                                         \
    ".globl " name "\n" name ":\n\t"                                                               \
    "pushl %ecx\n\t"                                                                               \
    "pushl %edx\n\t" VEXRT_CHECK_RANGE(lower, upper)                                               \
        VEXRT_TRUNCATING_STORE(letter) "movl (%esp), %eax\n\t"                                     \
                                       "addl $12, %esp\n\t"                                        \
                                       "popl %edx\n\t"                                             \
                                       "popl %ecx\n\t"                                             \
                                       "ret\n" VEXRT_FAIL "movl $" failure ", %eax\n\t"            \
                                       "popl %edx\n\t"                                             \
                                       "popl %ecx\n\t"                                             \
                                       "ret\n"

static_assert(FE_INVALID == 1);

__asm__(".text\n"
        // ---- unchecked: the processor's indefinite value outside the range ----
        ".globl ____ftol, ____ftoll\n"
        "____ftol:\n\t" VEXRT_TRUNCATING_STORE("l") "movl (%esp), %eax\n\t"
                                                    "addl $12, %esp\n\t"
                                                    "ret\n"
                                                    "____ftoll:\n\t" VEXRT_TRUNCATING_STORE(
                                                        "ll") "movl (%esp), %eax\n\t"
                                                              "movl 4(%esp), %edx\n\t"
                                                              "addl $12, %esp\n\t"
                                                              "ret\n"

        // ---- checked: -128 to 128, -32768 to 32768, 0 to 256, 0 to 65536, 0 to 2^32 ----
        VEXRT_CHECKED("____ftoc", "l", "0xC3000000", "0x43000000", "-0x80")
            VEXRT_CHECKED("____ftos", "l", "0xC7000000", "0x47000000", "-0x8000")
                VEXRT_CHECKED("____ftouc", "l", "0", "0x43800000", "0")
                    VEXRT_CHECKED("____ftous", "l", "0", "0x47800000", "0")
                        VEXRT_CHECKED("____ftoul", "ll", "0", "0x4F800000", "0")

        // ---- 0 to 2^64, through the signed store: from 2^63 on that gives its indefinite value,
        // and deliberately without a trace in the flags ----
        ".globl ____ftoull\n"
        "____ftoull:\n\t"
        "pushl %ecx\n\t" VEXRT_CHECK_RANGE(
            "0", "0x5F800000") "pushl $1\n\t"
                               "call _fetestexcept\n\t"
                               "movl %eax, (%esp)\n\t" // whether the flag was set before
        VEXRT_TRUNCATING_STORE("ll") "cmpl $0, 12(%esp)\n\t"
                                     "jne 1f\n\t"
                                     "pushl $1\n\t"
                                     "call _feclearexcept\n\t"
                                     "addl $4, %esp\n"
                                     "1:\n\t"
                                     "popl %eax\n\t"
                                     "popl %edx\n\t"
                                     "addl $8, %esp\n\t"
                                     "popl %ecx\n\t"
                                     "ret\n" VEXRT_FAIL "xorl %eax, %eax\n\t"
                                     "xorl %edx, %edx\n\t"
                                     "popl %ecx\n\t"
                                     "ret\n");
