// strtol and its relatives: narrow, wide, and the converters that others are built on.

#include "format/text_to_integer.h"

#include <inttypes.h>
#include <stdlib.h>
#include <wchar.h>

namespace vexrt {

namespace {

template <typename Unsigned, typename Char>
Unsigned to_unsigned(const Char *text, Char **end_pointer, int base) {
    const Char *end;
    Unsigned value = parse_unsigned<Unsigned>(text, end, base);
    if (end_pointer) *end_pointer = const_cast<Char *>(end);
    return value;
}

template <typename Unsigned, typename Char>
typename SignedOf<Unsigned>::Type to_signed(const Char *text, Char **end_pointer, int base) {
    const Char *end;
    auto value = parse_signed<Unsigned>(text, end, base);
    if (end_pointer) *end_pointer = const_cast<Char *>(end);
    return value;
}

// The atoi functions take the unsigned pattern as it is.
template <typename Unsigned, typename Char>
typename SignedOf<Unsigned>::Type to_pattern(const Char *text) {
    const Char *end;
    return static_cast<typename SignedOf<Unsigned>::Type>(parse_unsigned<Unsigned>(text, end, 10));
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

unsigned long __stoul(const char *s, char **end, int base) {
    return to_unsigned<uint32_t>(s, end, base);
}
unsigned long long __stoull(const char *s, char **end, int base) {
    return to_unsigned<uint64_t>(s, end, base);
}
long long __stoll(const char *s, char **end, int base) { return to_signed<uint64_t>(s, end, base); }

unsigned long __wstoul(const wchar_t *s, wchar_t **end, int base) {
    return to_unsigned<uint32_t>(s, end, base);
}
unsigned long long __wstoull(const wchar_t *s, wchar_t **end, int base) {
    return to_unsigned<uint64_t>(s, end, base);
}
long long __wstoll(const wchar_t *s, wchar_t **end, int base) {
    return to_signed<uint64_t>(s, end, base);
}

long strtol(const char *s, char **end, int base) { return to_signed<uint32_t>(s, end, base); }
long long strtoll(const char *s, char **end, int base) { return __stoll(s, end, base); }
unsigned long strtoul(const char *s, char **end, int base) { return __stoul(s, end, base); }
unsigned long long strtoull(const char *s, char **end, int base) { return __stoull(s, end, base); }
intmax_t strtoimax(const char *s, char **end, int base) { return __stoll(s, end, base); }
uintmax_t strtoumax(const char *s, char **end, int base) { return __stoull(s, end, base); }

long wcstol(const wchar_t *s, wchar_t **end, int base) { return to_signed<uint32_t>(s, end, base); }
long long wcstoll(const wchar_t *s, wchar_t **end, int base) { return __wstoll(s, end, base); }
unsigned long wcstoul(const wchar_t *s, wchar_t **end, int base) { return __wstoul(s, end, base); }
unsigned long long wcstoull(const wchar_t *s, wchar_t **end, int base) {
    return __wstoull(s, end, base);
}
intmax_t wcstoimax(const wchar_t *s, wchar_t **end, int base) { return __wstoll(s, end, base); }
uintmax_t wcstoumax(const wchar_t *s, wchar_t **end, int base) { return __wstoull(s, end, base); }

int atoi(const char *s) { return to_pattern<uint32_t>(s); }
long atol(const char *s) { return to_pattern<uint32_t>(s); }
long long atoll(const char *s) { return to_pattern<uint64_t>(s); }
int _wtoi(const wchar_t *s) { return to_pattern<uint32_t>(s); }
long _wtol(const wchar_t *s) { return to_pattern<uint32_t>(s); }
long long _wtoll(const wchar_t *s) { return to_pattern<uint64_t>(s); }

} // extern "C"
