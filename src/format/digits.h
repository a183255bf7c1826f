// Digits of unsigned integers, written from the right.
#pragma once

#include <stdint.h>

namespace vexrt {

// The most digits of a 64-bit value: 22 in octal, and one more zero in front.
constexpr unsigned digit_room = 24;

template <typename Char>
struct DigitPairs {
    Char of[200]; // "00" to "99"
    constexpr DigitPairs() : of{} {
        for (int i = 0; i < 100; ++i) {
            of[2 * i] = static_cast<Char>('0' + i / 10);
            of[2 * i + 1] = static_cast<Char>('0' + i % 10);
        }
    }
};
template <typename Char>
constexpr DigitPairs<Char> digit_pairs;

template <typename Char>
constexpr Char lower_digits[] = {'0', '1', '2', '3', '4', '5', '6', '7',
                                 '8', '9', 'a', 'b', 'c', 'd', 'e', 'f'};
template <typename Char>
constexpr Char upper_digits[] = {'0', '1', '2', '3', '4', '5', '6', '7',
                                 '8', '9', 'A', 'B', 'C', 'D', 'E', 'F'};

template <typename Char>
inline Char *put_digit_pair(Char *end, uint32_t pair) {
    __builtin_memcpy(end - 2, &digit_pairs<Char>.of[2 * pair], 2 * sizeof(Char));
    return end - 2;
}

// In front of `end`; returns the first digit. Zero is one digit.
template <typename Char>
inline Char *put_decimal(Char *end, uint32_t value) {
    while (value >= 100) {
        end = put_digit_pair(end, value % 100);
        value /= 100;
    }
    if (value >= 10) return put_digit_pair(end, value);
    *--end = static_cast<Char>('0' + value);
    return end;
}

// Exactly nine digits.
template <typename Char>
inline Char *put_nine_digits(Char *end, uint32_t value) {
    for (int i = 0; i < 4; ++i) {
        end = put_digit_pair(end, value % 100);
        value /= 100;
    }
    *--end = static_cast<Char>('0' + value);
    return end;
}

struct BillionSplit {
    uint64_t quotient;
    uint32_t remainder;
};

// Two steps of the processor's division of 64 by 32 bits, instead of a call for 64 by 64.
inline BillionSplit divide_by_billion(uint64_t value) {
    constexpr uint32_t billion = 1000000000;
    uint32_t high = static_cast<uint32_t>(value >> 32), low = static_cast<uint32_t>(value);
    uint32_t quotient, remainder;
    __asm__("divl %4"
            : "=a"(quotient), "=d"(remainder)
            : "a"(low), "d"(high % billion), "r"(billion)
            : "cc");
    return {static_cast<uint64_t>(high / billion) << 32 | quotient, remainder};
}

template <typename Char>
inline Char *put_decimal(Char *end, uint64_t value) {
    while (value >> 32) {
        BillionSplit split = divide_by_billion(value);
        end = put_nine_digits(end, split.remainder);
        value = split.quotient;
    }
    return put_decimal(end, static_cast<uint32_t>(value));
}

// Octal (3 bits a digit) and hexadecimal (4).
template <typename Char>
inline Char *put_binary_digits(Char *end, uint64_t value, unsigned bits, const Char *digits) {
    uint32_t mask = (1u << bits) - 1;
    while (value >> 32) {
        *--end = digits[static_cast<uint32_t>(value) & mask];
        value >>= bits;
    }
    auto rest = static_cast<uint32_t>(value);
    do {
        *--end = digits[rest & mask];
        rest >>= bits;
    } while (rest);
    return end;
}

} // namespace vexrt
