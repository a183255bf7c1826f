/*
 * rot13: a DLL for textfilter. It exports one function, uses the same C library as the program that loads
 * it, and has a constructor and a destructor of its own.
 */
#include <ctype.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static int letters;

__attribute__((constructor)) static void start(void) { puts("[rot13]"); }
__attribute__((destructor)) static void stop(void) { printf("[%d letters]\n", letters); }

/* The text with each letter thirteen places on, in a block that the caller frees. */
__declspec(dllexport) char *filter(const char *text)
{
    char *result = strdup(text);
    for (char *c = result; c && *c; ++c) {
        if (!isalpha((unsigned char)*c)) continue;
        ++letters;
        *c += tolower(*c) < 'n' ? 13 : -13;
    }
    return result;
}
