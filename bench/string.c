/* Memory and string functions: nanoseconds a call at three sizes, in characters. */
#include "bench.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <wchar.h>

#ifndef _WIN32
#include <strings.h>
#define _stricmp strcasecmp
#endif

#define MOST 65536

static char text[MOST + 64], other[MOST + 64], upper_text[MOST + 64], target[2 * MOST + 64];
static wchar_t wide_text[MOST + 64], wide_other[MOST + 64], wide_target[MOST + 64];

/* Sizes and contents the compiler must not know. */
static volatile size_t hidden_size;
static volatile int hidden_character;

static const char *named(const char *function, size_t size)
{
    static char name[64];
    if (size >= 1024) sprintf(name, "%s %uK", function, (unsigned)(size / 1024));
    else sprintf(name, "%s %u", function, (unsigned)size);
    return name;
}

#define TIME(function, call) BENCH(named(function, n), 1, bench_keep(call))

static void prepare(size_t n)
{
    size_t i;
    for (i = 0; i < n; ++i) text[i] = other[i] = (char)('a' + i * 7 % 23);
    for (i = 0; i < n; ++i) upper_text[i] = (char)(i % 8 ? text[i] : text[i] - 'a' + 'A');
    for (i = 0; i < n; ++i) wide_text[i] = wide_other[i] = (wchar_t)('a' + i * 7 % 23);
    text[n] = other[n] = upper_text[n] = '\0';
    wide_text[n] = wide_other[n] = 0;
    target[0] = '\0';
    hidden_size = n;
    hidden_character = 'z';
}

static void memory(size_t n)
{
    int c = hidden_character;
    TIME("memcpy", memcpy(target, text, n));
    TIME("memmove up", memmove(target + 16, target, n));
    TIME("memset", memset(target, c, n));
    TIME("memchr", memchr(text, c, n));
    TIME("memcmp", memcmp(text, other, n));
}

/* What no cache holds. */
static void large_memory(void)
{
    const size_t n = (size_t)16 << 20;
    char *from = calloc(n, 1), *to = calloc(n, 1);
    if (from && to) {
        memset(from, 1, n);
        TIME("memcpy", memcpy(to, from, n));
        TIME("memset", memset(to, hidden_character, n));
    }
    free(from);
    free(to);
}

static void strings(size_t n)
{
    int c = hidden_character;
    TIME("strlen", strlen(text));
    TIME("strchr", strchr(text, c));
    TIME("strrchr", strrchr(text, c));
    TIME("strcmp", strcmp(text, other));
    TIME("stricmp", _stricmp(text, upper_text));
    TIME("strncmp", strncmp(text, other, n));
    TIME("strcpy", strcpy(target, text));
    TIME("strncpy", strncpy(target, text, n));
    TIME("strcat", (target[0] = '\0', strcat(target, text)));
    TIME("strspn", strspn(text, "abcdefghijklmnopqrstuvw"));
    TIME("strcspn", strcspn(text, "XYZ,.;"));
    TIME("strpbrk", strpbrk(text, "XYZ,.;"));
    TIME("strstr", strstr(text, "howv"));
    TIME("strstr rare", strstr(text, "Needle"));
}

static void wide_strings(size_t n)
{
    wchar_t c = (wchar_t)hidden_character;
    TIME("wmemset", wmemset(wide_target, c, n));
    TIME("wmemchr", wmemchr(wide_text, c, n));
    TIME("wmemcmp", wmemcmp(wide_text, wide_other, n));
    TIME("wcslen", wcslen(wide_text));
    TIME("wcschr", wcschr(wide_text, c));
    TIME("wcsrchr", wcsrchr(wide_text, c));
    TIME("wcscmp", wcscmp(wide_text, wide_other));
    TIME("wcscpy", wcscpy(wide_target, wide_text));
    TIME("wcsstr", wcsstr(wide_text, L"howv"));
    TIME("wcscspn", wcscspn(wide_text, L"XYZ,.;"));
}

int main(void)
{
    static const size_t sizes[] = {12, 1024, 65536};
    size_t i;
    for (i = 0; i < sizeof sizes / sizeof sizes[0]; ++i) {
        prepare(sizes[i]);
        memory(hidden_size);
        strings(hidden_size);
        wide_strings(hidden_size);
    }
    large_memory();
    return 0;
}
