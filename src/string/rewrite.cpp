// Strings overwritten in place: set to one character, turned round.

#include "string/kernels.h"

#include <string.h>
#include <wchar.h>

namespace vexrt {

namespace {

template <typename Char>
Char *reverse(Char *string) {
    Char *first = string, *end = string + string_kernels<Char>().length(string);
    while (end - first > 1) {
        Char last = *--end;
        *end = *first;
        *first++ = last;
    }
    return string;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

char *_strset(char *s, int c) {
    return kernels.narrow.fill(s, static_cast<char>(c), kernels.narrow.length(s));
}
wchar_t *_wcsset(wchar_t *s, wchar_t c) { return kernels.wide.fill(s, c, kernels.wide.length(s)); }

char *_strnset(char *s, int c, size_t n) {
    return kernels.narrow.fill(s, static_cast<char>(c), kernels.narrow.bounded_length(s, n));
}
wchar_t *_wcsnset(wchar_t *s, wchar_t c, size_t n) {
    return kernels.wide.fill(s, c, kernels.wide.bounded_length(s, n));
}

char *_strrev(char *s) { return reverse(s); }
wchar_t *_wcsrev(wchar_t *s) { return reverse(s); }

} // extern "C"
