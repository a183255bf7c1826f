// Blocks of memory, and arrays of wide characters.

#include "string/kernels.h"

#include <string.h>
#include <wchar.h>

using namespace vexrt;

extern "C" {

void *memcpy(void *__restrict s1, const void *__restrict s2, size_t n) {
    return kernels.move(s1, s2, n);
}

void *memmove(void *s1, const void *s2, size_t n) { return kernels.move(s1, s2, n); }

void *memset(void *s, int c, size_t n) {
    return kernels.narrow.fill(static_cast<char *>(s), static_cast<char>(c), n);
}

void *memchr(const void *s, int c, size_t n) {
    return kernels.narrow.find(static_cast<const char *>(s), static_cast<char>(c), n);
}

int memcmp(const void *s1, const void *s2, size_t n) {
    return kernels.narrow.compare(static_cast<const char *>(s1), static_cast<const char *>(s2), n);
}

void *_memccpy(void *__restrict s1, const void *__restrict s2, int c, size_t n) {
    const char *from = static_cast<const char *>(s2);
    const char *found = kernels.narrow.find(from, static_cast<char>(c), n);
    size_t size = found ? static_cast<size_t>(found + 1 - from) : n;
    kernels.move(s1, s2, size);
    return found ? static_cast<char *>(s1) + size : nullptr;
}

wchar_t *wmemcpy(wchar_t *__restrict s1, const wchar_t *__restrict s2, size_t n) {
    return static_cast<wchar_t *>(kernels.move(s1, s2, n * sizeof(wchar_t)));
}

wchar_t *wmemmove(wchar_t *s1, const wchar_t *s2, size_t n) {
    return static_cast<wchar_t *>(kernels.move(s1, s2, n * sizeof(wchar_t)));
}

wchar_t *wmemset(wchar_t *s, wchar_t c, size_t n) { return kernels.wide.fill(s, c, n); }

wchar_t *wmemchr(const wchar_t *s, wchar_t c, size_t n) { return kernels.wide.find(s, c, n); }

int wmemcmp(const wchar_t *s1, const wchar_t *s2, size_t n) {
    return kernels.wide.compare(s1, s2, n);
}

} // extern "C"
