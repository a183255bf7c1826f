// Stack probes. A frame larger than a page must touch its pages in order, so that the guard page
// grows the stack. The size is in eax.
//
// `__chkstk` (clang on windows-msvc) and `__alloca` (clang on windows-gnu) also lower esp by it;
// `___chkstk_ms` (gcc) keeps every register and leaves that to its caller.

__asm__(".text\n"
        ".globl __chkstk, __alloca, ___chkstk_ms\n"
        "__alloca:\n"
        "__chkstk:\n\t"
        "pushl %ecx\n\t"
        "leal 8(%esp), %ecx\n" // the caller's esp
        "1:\n\t"
        "cmpl $0x1000, %eax\n\t"
        "jb 2f\n\t"
        "subl $0x1000, %ecx\n\t"
        "testl %eax, (%ecx)\n\t"
        "subl $0x1000, %eax\n\t"
        "jmp 1b\n"
        "2:\n\t"
        "subl %eax, %ecx\n\t"
        "testl %eax, (%ecx)\n\t"
        "movl %esp, %eax\n\t"
        "movl %ecx, %esp\n\t"
        "movl (%eax), %ecx\n\t" // as it was
        "pushl 4(%eax)\n\t"     // the return address
        "ret\n"
        "___chkstk_ms:\n\t"
        "pushl %ecx\n\t"
        "pushl %eax\n\t"
        "leal 12(%esp), %ecx\n"
        "3:\n\t"
        "cmpl $0x1000, %eax\n\t"
        "jb 4f\n\t"
        "subl $0x1000, %ecx\n\t"
        "testl %eax, (%ecx)\n\t"
        "subl $0x1000, %eax\n\t"
        "jmp 3b\n"
        "4:\n\t"
        "subl %eax, %ecx\n\t"
        "testl %eax, (%ecx)\n\t"
        "popl %eax\n\t"
        "popl %ecx\n\t"
        "ret\n");
