/* The same without a C library: what the system's part of a process start costs. */
__declspec(dllimport) void *__stdcall GetStdHandle(unsigned long which);
__declspec(dllimport) int __stdcall WriteFile(void *file, const void *from, unsigned long size,
                                              unsigned long *done, void *overlapped);
__declspec(dllimport) void __stdcall ExitProcess(unsigned status);

void bare(void)
{
    unsigned long done;
    WriteFile(GetStdHandle((unsigned long)-11), "hello\r\n", 7, &done, 0);
    ExitProcess(0);
}
