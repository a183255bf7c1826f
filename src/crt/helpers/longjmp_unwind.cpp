// What clang names as the routine by which a jump leaves the __try statements of the function that
// called setjmp(): words 6 and 7 of the jmp_buf are the function's frame and the __try to stay in.

extern "C" void __local_unwind2(void *frame, int level);

extern "C" void __stdcall _seh_longjmp_unwind(int *env) {
    __local_unwind2(reinterpret_cast<void *>(env[6]), env[7]);
}
