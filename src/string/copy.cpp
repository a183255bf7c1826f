// Strings that are copied and joined. The length is found first and the characters are then moved
// as a block; so source and target may even overlap.

#include "string/kernels.h"

#include <stdlib.h>
#include <string.h>
#include <wchar.h>

namespace vexrt {

namespace {

// Copies `count` characters and puts a terminator behind them.
template <typename Char>
Char *copy_terminated(Char *to, const Char *from, size_t count) {
    kernels.move(to, from, count * sizeof(Char));
    to[count] = 0;
    return to;
}

template <typename Char>
Char *copy(Char *to, const Char *from) {
    size_t count = string_kernels<Char>().length(from) + 1;
    return static_cast<Char *>(kernels.move(to, from, count * sizeof(Char)));
}

// Exactly `count` characters: cut without a terminator, or padded with zeros.
template <typename Char>
Char *copy_exactly(Char *to, const Char *from, size_t count) {
    size_t length = string_kernels<Char>().bounded_length(from, count);
    kernels.move(to, from, length * sizeof(Char));
    if (length < count) string_kernels<Char>().fill(to + length, 0, count - length);
    return to;
}

template <typename Char>
Char *append(Char *to, const Char *from) {
    copy(to + string_kernels<Char>().length(to), from);
    return to;
}

template <typename Char>
Char *append_bounded(Char *to, const Char *from, size_t limit) {
    size_t length = string_kernels<Char>().bounded_length(from, limit);
    copy_terminated(to + string_kernels<Char>().length(to), from, length);
    return to;
}

template <typename Char>
Char *duplicate(const Char *from, size_t length) {
    auto *to = static_cast<Char *>(malloc((length + 1) * sizeof(Char)));
    return to ? copy_terminated(to, from, length) : nullptr;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

char *strcpy(char *__restrict s1, const char *__restrict s2) { return copy(s1, s2); }
wchar_t *wcscpy(wchar_t *__restrict s1, const wchar_t *__restrict s2) { return copy(s1, s2); }

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
