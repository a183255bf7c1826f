// Comparison without regard to letter case, and strings turned to one case, by the thread's locale.

#include <ctype.h>
#include <stdint.h>
#include <string.h>
#include <wchar.h>
#include <wctype.h>

namespace vexrt {

namespace {

int lower(char c) { return tolower(static_cast<unsigned char>(c)); }
int lower(wchar_t c) { return towlower(c); }
int upper(char c) { return toupper(static_cast<unsigned char>(c)); }
int upper(wchar_t c) { return towupper(c); }

enum class Stop { at_terminator, at_count_only };

// Up to `count` characters; equal ones need no look at their case.
template <Stop stop, typename Char>
int compare_ignoring_case(const Char *left, const Char *right, size_t count) {
    for (; count; ++left, ++right, --count) {
        if (*left != *right) {
            int difference = lower(*left) - lower(*right);
            if (difference) return difference;
        }
        if (stop == Stop::at_terminator && !*left) break;
    }
    return 0;
}

template <typename Char>
Char *turn(Char *string, int (*turned)(Char)) {
    for (Char *at = string; *at; ++at) *at = static_cast<Char>(turned(*at));
    return string;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

int _memicmp(const void *s1, const void *s2, size_t n) {
    return compare_ignoring_case<Stop::at_count_only>(static_cast<const char *>(s1),
                                                      static_cast<const char *>(s2), n);
}

int _stricmp(const char *s1, const char *s2) {
    return compare_ignoring_case<Stop::at_terminator>(s1, s2, SIZE_MAX);
}
int _wcsicmp(const wchar_t *s1, const wchar_t *s2) {
    return compare_ignoring_case<Stop::at_terminator>(s1, s2, SIZE_MAX);
}

int _strnicmp(const char *s1, const char *s2, size_t n) {
    return compare_ignoring_case<Stop::at_terminator>(s1, s2, n);
}
int _wcsnicmp(const wchar_t *s1, const wchar_t *s2, size_t n) {
    return compare_ignoring_case<Stop::at_terminator>(s1, s2, n);
}

char *_strlwr(char *s) { return turn<char>(s, lower); }
wchar_t *_wcslwr(wchar_t *s) { return turn<wchar_t>(s, lower); }

char *_strupr(char *s) { return turn<char>(s, upper); }
wchar_t *_wcsupr(wchar_t *s) { return turn<wchar_t>(s, upper); }

} // extern "C"
