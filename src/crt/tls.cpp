// The TLS directory: with it the loader gives every thread a copy of the image's thread-local
// variables and calls the functions between .CRT$XLA and .CRT$XLZ when threads come and go.

#include "platform/kernel32.h"

using namespace vexrt;

extern "C" {

#pragma section(".tls", read, write)
#pragma section(".tls$ZZZ", read, write)
#pragma section(".CRT$XLA", read)
#pragma section(".CRT$XLZ", read)

using TlsCallback = void(__stdcall *)(void *image, DWORD reason, void *reserved);

// The linker sorts the variables of all objects between these two.
__declspec(allocate(".tls")) char _tls_start = 0;
__declspec(allocate(".tls$ZZZ")) char _tls_end = 0;
__declspec(allocate(".CRT$XLA")) extern const TlsCallback __xl_a = nullptr;
__declspec(allocate(".CRT$XLZ")) extern const TlsCallback __xl_z = nullptr;

// Where the loader stores this image's number; code that reads a thread-local variable uses it.
DWORD _tls_index = 0;

struct TlsDirectory {
    const void *start, *end;
    DWORD *index;
    const TlsCallback *callbacks;
    DWORD zero_fill, characteristics;
};

// The linker enters the object of this name in the image's directories.
extern const TlsDirectory _tls_used = {&_tls_start, &_tls_end, &_tls_index, &__xl_a + 1, 0, 0};

} // extern "C"

// Where the thread block keeps the pointers to the images' variables.
__asm__(".globl __tls_array\n"
        "__tls_array = 0x2C\n");
