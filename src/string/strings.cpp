// Strings that are only read: length, comparison, search.

#include "string/kernels.h"

#include <stdint.h>
#include <string.h>
#include <wchar.h>

namespace vexrt {

namespace {

template <typename Char>
Char *find_any(const Char *string, const Char *set) {
    const Char *found = string + string_kernels<Char>().span_outside(string, set, SIZE_MAX);
    return *found ? const_cast<Char *>(found) : nullptr;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

size_t strlen(const char *s) { return kernels.narrow.length(s); }
size_t wcslen(const wchar_t *s) { return kernels.wide.length(s); }

// No constraint: a null string has no characters.
size_t strnlen_s(const char *s, size_t maxsize) {
    return s ? kernels.narrow.bounded_length(s, maxsize) : 0;
}
size_t wcsnlen_s(const wchar_t *s, size_t maxsize) {
    return s ? kernels.wide.bounded_length(s, maxsize) : 0;
}

int strcmp(const char *s1, const char *s2) { return kernels.narrow.compare_strings(s1, s2); }
int wcscmp(const wchar_t *s1, const wchar_t *s2) { return kernels.wide.compare_strings(s1, s2); }

int strncmp(const char *s1, const char *s2, size_t n) {
    return kernels.narrow.compare_strings_bounded(s1, s2, n);
}
int wcsncmp(const wchar_t *s1, const wchar_t *s2, size_t n) {
    return kernels.wide.compare_strings_bounded(s1, s2, n);
}

char *strchr(const char *s, int c) {
    return kernels.narrow.find_in_string(s, static_cast<char>(c));
}
wchar_t *wcschr(const wchar_t *s, wchar_t c) { return kernels.wide.find_in_string(s, c); }

char *strrchr(const char *s, int c) {
    return kernels.narrow.find_last_in_string(s, static_cast<char>(c));
}
wchar_t *wcsrchr(const wchar_t *s, wchar_t c) { return kernels.wide.find_last_in_string(s, c); }

size_t strspn(const char *s1, const char *s2) { return kernels.narrow.span_in(s1, s2, SIZE_MAX); }
size_t wcsspn(const wchar_t *s1, const wchar_t *s2) {
    return kernels.wide.span_in(s1, s2, SIZE_MAX);
}

size_t strcspn(const char *s1, const char *s2) {
    return kernels.narrow.span_outside(s1, s2, SIZE_MAX);
}
size_t wcscspn(const wchar_t *s1, const wchar_t *s2) {
    return kernels.wide.span_outside(s1, s2, SIZE_MAX);
}

char *strpbrk(const char *s1, const char *s2) { return find_any(s1, s2); }
wchar_t *wcspbrk(const wchar_t *s1, const wchar_t *s2) { return find_any(s1, s2); }

char *strstr(const char *s1, const char *s2) { return kernels.narrow.find_string(s1, s2); }
wchar_t *wcsstr(const wchar_t *s1, const wchar_t *s2) { return kernels.wide.find_string(s1, s2); }

} // extern "C"
