// clang's names of the frame handler are one underscore shorter than those of vexrt.dll.

__asm__(".text\n"
        ".globl __except_handler3, __local_unwind2\n"
        "__except_handler3:\n\t"
        "jmp *__imp____except_handler3\n"
        "__local_unwind2:\n\t"
        "jmp *__imp____local_unwind2\n");
