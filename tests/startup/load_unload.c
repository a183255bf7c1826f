/*
 * A second copy of the library, loaded and unloaded at run time: everything works in a process that
 * already has threads and used-up thread-local slots, and unloading flushes and gives back.
 */
#include "check.h"

#include <stdlib.h>

__declspec(dllimport) void *__stdcall GetModuleHandleA(const char *name);
__declspec(dllimport) unsigned long __stdcall GetModuleFileNameA(void *, char *, unsigned long);
__declspec(dllimport) int __stdcall CopyFileA(const char *from, const char *to, int fail_if_exists);
__declspec(dllimport) int __stdcall DeleteFileA(const char *path);
__declspec(dllimport) void *__stdcall LoadLibraryA(const char *name);
__declspec(dllimport) int __stdcall FreeLibrary(void *module);
__declspec(dllimport) void *__stdcall GetProcAddress(void *module, const char *name);
__declspec(dllimport) unsigned long __stdcall TlsAlloc(void);
__declspec(dllimport) int __stdcall TlsFree(unsigned long slot);

#define COPY "second-copy.dll"
#define NAME "load-unload.tmp"

static int registered_ran;
static void never(void) { ++registered_ran; }

static void use_copy(int round)
{
    void *module = LoadLibraryA(COPY);
    CHECK(module != NULL);
    if (!module) return;
#define FIND(result, name, parameters) result(*name##_) parameters = (result(*) parameters)GetProcAddress(module, #name)
    FIND(FILE *, fopen, (const char *, const char *));
    FIND(int, fprintf, (FILE *, const char *, ...));
    FIND(void *, malloc, (size_t));
    FIND(void, free, (void *));
    FIND(int *, __errno, (void));
    FIND(int, atexit, (void (*)(void)));
    FIND(int, __heap_validate, (const void *));
    *__errno_() = 5;
    CHECK_INT(*__errno_(), 5);
    CHECK(__errno_() != &errno);
    free_(malloc_(100));
    FILE *file = fopen_(NAME, "w");
    CHECK(file != NULL);
    CHECK_INT(fprintf_(file, "round %d", round) > 0, 1);
    CHECK_INT(__heap_validate_(NULL), 1);
    atexit_(never); /* runs through exit() only */
    CHECK(FreeLibrary(module));

    char text[32] = "";
    file = fopen(NAME, "r");
    CHECK(file != NULL);
    if (!file) return;
    CHECK(fgets(text, sizeof text, file) != NULL);
    fclose(file);
    char due[32];
    snprintf(due, sizeof due, "round %d", round);
    CHECK_STR(text, due);
}

int main(void)
{
    char path[1024];
    unsigned long slots[80];
    GetModuleFileNameA(GetModuleHandleA("vexrt.dll"), path, sizeof path);
    CHECK(CopyFileA(path, COPY, 0));
    for (int round = 0; round < 40; ++round) use_copy(round);
    for (int i = 0; i < 80; ++i) slots[i] = TlsAlloc(); /* from here on slots lie beyond the thread block */
    for (int round = 40; round < 50; ++round) use_copy(round);
    for (int i = 0; i < 80; ++i) TlsFree(slots[i]);
    CHECK_INT(registered_ran, 0);
    DeleteFileA(COPY);
    DeleteFileA(NAME);
    return check_done();
}
