// Text to integers: the unsigned parsers and the signed layer over them, narrow and wide.
//
// The results are those of the exported functions: a value that does not fit gives all ones (or the
// signed limit) and ERANGE, and deliberately leaves the end pointer at the start of the text.
#pragma once

#include "core/errno.h"
#include "core/thread_record.h"
#include "locale/locale_record.h"

#include <stdint.h>
#include <wctype.h>

namespace vexrt {

inline bool is_white_space(char c) {
    return thread_record().locale->classes[static_cast<unsigned char>(c)] & class_white_space;
}
inline bool is_white_space(wchar_t c) { return iswspace(c); }

constexpr unsigned no_digit = 36;

// What a character is worth in the largest base; `no_digit` when it is none.
template <typename Char>
inline unsigned digit_value(Char c) {
    auto code = static_cast<unsigned>(c);
    if (code - '0' < 10) return code - '0';
    unsigned letter = (code | 0x20) - 'a';
    return letter < 26 && code < 0x80 ? letter + 10 : no_digit;
}

template <typename Char>
bool take_sign(const Char *&text) {
    bool negative = *text == '-';
    if (negative || *text == '+') ++text;
    return negative;
}

// Reads a prefix that the base asks for or permits. False for an invalid base.
template <typename Char>
bool settle_base(const Char *&text, int &base) {
    if (base < 0 || base == 1 || base > 36) return false;
    bool prefixed = text[0] == '0' && (text[1] | 0x20) == 'x';
    if (prefixed && (base == 0 || base == 16)) {
        text += 2;
        base = 16;
    } else if (base == 0) {
        base = *text == '0' ? 8 : 10;
    }
    return true;
}

// value * base + digit; false when that does not fit.
inline bool append_digit(uint32_t &value, unsigned base, unsigned digit) {
    uint64_t sum = static_cast<uint64_t>(value) * base + digit;
    value = static_cast<uint32_t>(sum);
    return sum >> 32 == 0;
}

inline bool append_digit(uint64_t &value, unsigned base, unsigned digit) {
    uint64_t low = (value & 0xFFFFFFFF) * base + digit;
    uint64_t high = (value >> 32) * base + (low >> 32);
    value = high << 32 | (low & 0xFFFFFFFF);
    return high >> 32 == 0;
}

// `end` is behind the last digit; at `text` when nothing was converted or it did not fit.
template <typename Unsigned, typename Char>
Unsigned parse_unsigned(const Char *text, const Char *&end, int base) {
    const Char *at = text;
    end = text;
    while (is_white_space(*at)) ++at;
    bool negative = take_sign(at);
    if (!settle_base(at, base)) return 0;
    auto radix = static_cast<unsigned>(base);
    const Char *first = at;
    constexpr uint32_t one_word = (UINT32_MAX - 35) / 36; // another digit of any base fits 32 bits
    uint32_t low = 0;
    unsigned digit = digit_value(*at);
    for (; digit < radix && low <= one_word; digit = digit_value(*++at)) low = low * radix + digit;
    Unsigned value = low;
    for (; digit < radix; digit = digit_value(*++at)) {
        if (append_digit(value, radix, digit)) continue;
        set_errno(ERANGE);
        return static_cast<Unsigned>(-1);
    }
    if (at == first) return 0;
    end = at;
    return negative ? 0 - value : value;
}

template <typename Unsigned>
struct SignedOf;
template <>
struct SignedOf<uint32_t> {
    using Type = int32_t;
};
template <>
struct SignedOf<uint64_t> {
    using Type = int64_t;
};

// Reads a sign of its own; the parser then accepts a second one, whose result is out of range.
template <typename Unsigned, typename Char>
typename SignedOf<Unsigned>::Type parse_signed(const Char *text, const Char *&end, int base) {
    using Signed = typename SignedOf<Unsigned>::Type;
    constexpr Unsigned limit = static_cast<Unsigned>(1) << (8 * sizeof(Unsigned) - 1);
    const Char *at = text;
    while (is_white_space(*at)) ++at;
    bool negative = take_sign(at);
    Unsigned value = parse_unsigned<Unsigned>(at, end, base);
    bool converted = end != at;
    if (!converted) end = text;
    if ((converted || value == 0) && value <= limit - !negative)
        return static_cast<Signed>(negative ? 0 - value : value);
    set_errno(ERANGE);
    end = text;
    return static_cast<Signed>(negative ? limit : limit - 1);
}

} // namespace vexrt
