// Comparison without regard to letter case, and strings turned to one case, by the thread's locale.

#include "core/thread_record.h"
#include "locale/locale_record.h"
#include "string/kernels.h"

#include <stdint.h>
#include <string.h>
#include <wchar.h>
#include <wctype.h>

namespace vexrt {

namespace {

// Whether the thread's locale has no letters but A to Z, as the "C" locale: kernels know those.
template <typename Char>
bool plain_letters_only();
template <>
bool plain_letters_only<char>() {
    return thread_record().locale->lower_case == c_lower_case.zero();
}
template <>
bool plain_letters_only<wchar_t>() {
    return thread_record().locale->wide_mappings == c_wide_mappings;
}

// The case mappings of the thread's locale, looked up once a call.
template <typename Char>
struct Lower {
    const short *table = thread_record().locale->lower_case;
    int operator()(Char c) const { return table[static_cast<unsigned char>(c)]; }
};
template <>
struct Lower<wchar_t> {
    int operator()(wchar_t c) const { return towlower(c); }
};

template <typename Char>
struct Upper {
    const short *table = thread_record().locale->upper_case;
    int operator()(Char c) const { return table[static_cast<unsigned char>(c)]; }
};
template <>
struct Upper<wchar_t> {
    int operator()(wchar_t c) const { return towupper(c); }
};

enum class Stop { at_terminator, at_count_only };

// Up to `count` characters; equal ones need no look at their case.
template <Stop stop, typename Char>
int compare_ignoring_case(const Char *left, const Char *right, size_t count) {
    const Lower<Char> lower;
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
int compare_strings_ignoring_case(const Char *left, const Char *right, size_t count) {
    if (plain_letters_only<Char>())
        return string_kernels<Char>().compare_ignoring_case(left, right, count);
    return compare_ignoring_case<Stop::at_terminator>(left, right, count);
}

template <typename Mapping, typename Char>
Char *turn(Char *string) {
    const Mapping mapping;
    for (Char *at = string; *at; ++at) *at = static_cast<Char>(mapping(*at));
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
    return compare_strings_ignoring_case(s1, s2, SIZE_MAX);
}
int _wcsicmp(const wchar_t *s1, const wchar_t *s2) {
    return compare_strings_ignoring_case(s1, s2, SIZE_MAX);
}

int _strnicmp(const char *s1, const char *s2, size_t n) {
    return compare_strings_ignoring_case(s1, s2, n);
}
int _wcsnicmp(const wchar_t *s1, const wchar_t *s2, size_t n) {
    return compare_strings_ignoring_case(s1, s2, n);
}

char *_strlwr(char *s) { return turn<Lower<char>>(s); }
wchar_t *_wcslwr(wchar_t *s) { return turn<Lower<wchar_t>>(s); }

char *_strupr(char *s) { return turn<Upper<char>>(s); }
wchar_t *_wcsupr(wchar_t *s) { return turn<Upper<wchar_t>>(s); }

} // extern "C"
