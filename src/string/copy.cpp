// Strings that are copied and joined.

#include "string/kernels.h"

#include <stdlib.h>
#include <string.h>
#include <wchar.h>

namespace vexrt {

namespace {

// Exactly `count` characters: cut without a terminator, or padded with zeros.
template <typename Char>
Char *copy_exactly(Char *to, const Char *from, size_t count) {
    size_t length = string_kernels<Char>().copy_string_bounded(to, from, count);
    if (length < count) string_kernels<Char>().fill(to + length, 0, count - length);
    return to;
}

// An empty string has often been made so just before, and a whole block read would wait for that
// store.
template <typename Char>
Char *end_of(Char *string) {
    return *string ? string + string_kernels<Char>().length(string) : string;
}

template <typename Char>
Char *append(Char *to, const Char *from) {
    string_kernels<Char>().copy_string(end_of(to), from);
    return to;
}

template <typename Char>
Char *append_bounded(Char *to, const Char *from, size_t limit) {
    Char *end = end_of(to);
    end[string_kernels<Char>().copy_string_bounded(end, from, limit)] = 0;
    return to;
}

template <typename Char>
Char *duplicate(const Char *from, size_t length) {
    auto *to = static_cast<Char *>(malloc((length + 1) * sizeof(Char)));
    if (!to) return nullptr;
    kernels.move(to, from, length * sizeof(Char));
    to[length] = 0;
    return to;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

char *strcpy(char *__restrict s1, const char *__restrict s2) {
    return kernels.narrow.copy_string(s1, s2);
}
wchar_t *wcscpy(wchar_t *__restrict s1, const wchar_t *__restrict s2) {
    return kernels.wide.copy_string(s1, s2);
}

char *strncpy(char *__restrict s1, const char *__restrict s2, size_t n) {
    return copy_exactly(s1, s2, n);
}
wchar_t *wcsncpy(wchar_t *__restrict s1, const wchar_t *__restrict s2, size_t n) {
    return copy_exactly(s1, s2, n);
}

char *strcat(char *__restrict s1, const char *__restrict s2) { return append(s1, s2); }
wchar_t *wcscat(wchar_t *__restrict s1, const wchar_t *__restrict s2) { return append(s1, s2); }

char *strncat(char *__restrict s1, const char *__restrict s2, size_t n) {
    return append_bounded(s1, s2, n);
}
wchar_t *wcsncat(wchar_t *__restrict s1, const wchar_t *__restrict s2, size_t n) {
    return append_bounded(s1, s2, n);
}

char *strdup(const char *s) { return duplicate(s, kernels.narrow.length(s)); }
char *strndup(const char *s, size_t n) { return duplicate(s, kernels.narrow.bounded_length(s, n)); }
wchar_t *_wcsdup(const wchar_t *s) { return duplicate(s, kernels.wide.length(s)); }

} // extern "C"
