/* Threads that search with one expression at the same time, while its states are still being made. */
#include "check.h"

#include <malloc.h>
#include <regex.h>
#include <stdlib.h>

__declspec(dllimport) void *__stdcall CreateThread(void *, size_t, unsigned long(__stdcall *)(void *),
                                                   void *, unsigned long, unsigned long *);
__declspec(dllimport) unsigned long __stdcall WaitForMultipleObjects(unsigned long, void *const *, int,
                                                                     unsigned long);
__declspec(dllimport) int __stdcall CloseHandle(void *);

enum { THREADS = 4, ROUNDS = 3000 };
static regex_t expression;
static volatile long wrong[THREADS];

static unsigned long __stdcall search(void *argument)
{
    long *errors = argument;
    unsigned random = (unsigned)(errors - (long *)wrong) + 1;
    for (int round = 0; round < ROUNDS; ++round) {
        char text[64];
        regmatch_t m[3];
        int letters = (int)((random = random * 1664525 + 1013904223) >> 28);
        int digits = (int)((random = random * 1664525 + 1013904223) >> 29) + 1;
        char *to = text + sprintf(text, "--");
        for (int i = 0; i <= letters; ++i) *to++ = (char)('a' + (random >> i) % 26);
        *to++ = '=';
        for (int i = 0; i < digits; ++i) *to++ = (char)('0' + (random >> i) % 10);
        *to = '\0';
        if (regexec(&expression, text, 3, m, 0) != 0 || m[1].rm_so != 2 || m[1].rm_eo != 3 + letters ||
            m[2].rm_so != 4 + letters || m[2].rm_eo != 4 + letters + digits)
            ++*errors;
    }
    return 0;
}

int main(void)
{
    void *threads[THREADS];
    CHECK_INT(regcomp(&expression, "([a-z]+)=([0-9]+)", REG_EXTENDED), 0);
    for (int i = 0; i < THREADS; ++i) {
        threads[i] = CreateThread(NULL, 0, search, (void *)&wrong[i], 0, NULL);
        CHECK(threads[i] != NULL);
    }
    CHECK_INT(WaitForMultipleObjects(THREADS, threads, 1, 60000), 0);
    for (int i = 0; i < THREADS; ++i) {
        CHECK_INT(wrong[i], 0);
        CloseHandle(threads[i]);
    }
    regfree(&expression);
    CHECK_INT(__heap_validate(NULL), 1);
    return check_done();
}
