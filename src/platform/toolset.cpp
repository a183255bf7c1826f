// What the compiler's own conventions ask of every image.

extern "C" {

// Says that floating point is used; the linker of the compiler's home looks for it.
extern const int _fltused = 0x9875;

} // extern "C"

// Touches every page of a large stack frame in order, so that the guard page grows the stack. The
// size is in eax; on return esp has been lowered by it.
__asm__(".text\n"
        ".globl __chkstk\n"
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
        "movl (%eax), %ecx\n\t" // what was pushed
        "pushl 4(%eax)\n\t"     // the return address
        "ret\n");
