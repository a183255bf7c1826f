// _itoa and its relatives: integers as text in any base from 2 to 36, narrow and wide.

#include "core/errno.h"
#include "format/text_to_integer.h"

#include <stdlib.h>

namespace vexrt {

namespace {

constexpr char digits[] = "0123456789abcdefghijklmnopqrstuvwxyz";
constexpr unsigned digit_limit = 64; // of a 64-bit value in base 2

// Writes the digits of `value` at `to`, terminated.
template <typename Unsigned, typename Char>
void write_in_base(Char *to, Unsigned value, unsigned base) {
    Char reversed[digit_limit];
    unsigned count = 0;
    do reversed[count++] = static_cast<Char>(digits[static_cast<unsigned>(value % base)]);
    while (value /= base);
    while (count) *to++ = reversed[--count];
    *to = 0;
}

// An invalid base gives an empty text and EINVAL.
template <typename Unsigned, typename Char>
Char *unsigned_to_text(Unsigned value, Char *buffer, int base) {
    if (base < 2 || base > 36) {
        set_errno(EINVAL);
        *buffer = 0;
    } else {
        write_in_base(buffer, value, static_cast<unsigned>(base));
    }
    return buffer;
}

// Only base 10 knows a minus sign; in any other base a negative value is its unsigned pattern.
template <typename Unsigned, typename Char>
Char *signed_to_text(typename SignedOf<Unsigned>::Type value, Char *buffer, int base) {
    auto pattern = static_cast<Unsigned>(value);
    if (base != 10 || value >= 0) return unsigned_to_text(pattern, buffer, base);
    *buffer = '-';
    write_in_base(buffer + 1, Unsigned(0 - pattern), 10);
    return buffer;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

char *_itoa(int value, char *to, int base) { return signed_to_text<uint32_t>(value, to, base); }
char *_ltoa(long value, char *to, int base) { return signed_to_text<uint32_t>(value, to, base); }
char *_lltoa(long long value, char *to, int base) {
    return signed_to_text<uint64_t>(value, to, base);
}
char *_ultoa(unsigned long value, char *to, int base) { return unsigned_to_text(value, to, base); }
char *_ulltoa(unsigned long long value, char *to, int base) {
    return unsigned_to_text(value, to, base);
}

wchar_t *_itow(int value, wchar_t *to, int base) {
    return signed_to_text<uint32_t>(value, to, base);
}
wchar_t *_ltow(long value, wchar_t *to, int base) {
    return signed_to_text<uint32_t>(value, to, base);
}
wchar_t *_lltow(long long value, wchar_t *to, int base) {
    return signed_to_text<uint64_t>(value, to, base);
}
wchar_t *_ultow(unsigned long value, wchar_t *to, int base) {
    return unsigned_to_text(value, to, base);
}
wchar_t *_ulltow(unsigned long long value, wchar_t *to, int base) {
    return unsigned_to_text(value, to, base);
}

} // extern "C"
