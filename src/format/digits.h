// Digits of unsigned integers: counted first, then written straight to their place from the right.
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

constexpr uint64_t powers_of_ten[] = {
    0, // so that zero has one digit
    10,
    100,
    1000,
    10000,
    100000,
    1000000,
    10000000,
    100000000,
    1000000000,
    10000000000,
    100000000000,
    1000000000000,
    10000000000000,
    100000000000000,
    1000000000000000,
    10000000000000000,
    100000000000000000,
    1000000000000000000,
    10000000000000000000u,
};

inline unsigned bit_count(uint32_t value) { return 32 - __builtin_clz(value | 1); }
inline unsigned bit_count(uint64_t value) {
    auto high = static_cast<uint32_t>(value >> 32);
    return high ? 32 + bit_count(high) : bit_count(static_cast<uint32_t>(value));
}

inline unsigned decimal_digit_count(uint64_t value) {
    unsigned digits = bit_count(value) * 1233 >> 12; // times log10(2), rounded down
    return digits + (value >= powers_of_ten[digits]);
}

// Of digits that stand for `bits` bits each.
inline unsigned binary_digit_count(uint64_t value, unsigned bits) {
    return (bit_count(value) + bits - 1) / bits;
}

// Writes exactly `count` digits up to `end`, zeros in front.
template <typename Char>
inline void write_decimal(Char *end, unsigned count, uint32_t value) {
    for (; count >= 2; count -= 2) {
        end -= 2;
        __builtin_memcpy(end, &digit_pairs<Char>.of[value % 100 * 2], 2 * sizeof(Char));
        value /= 100;
    }
    if (count) end[-1] = static_cast<Char>('0' + value % 10);
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
inline void write_decimal(Char *end, unsigned count, uint64_t value) {
    while (value >> 32) { // of more than nine digits
        BillionSplit split = divide_by_billion(value);
        write_decimal(end, 9, split.remainder);
        end -= 9;
        count -= 9;
        value = split.quotient;
    }
    write_decimal(end, count, static_cast<uint32_t>(value));
}

template <typename Char>
inline void write_binary(Char *end, unsigned count, uint64_t value, unsigned bits,
                         const Char *digits) {
    uint32_t mask = (1u << bits) - 1;
    for (; value >> 32; value >>= bits, --count)
        *--end = digits[static_cast<uint32_t>(value) & mask];
    for (auto rest = static_cast<uint32_t>(value); count; rest >>= bits, --count)
        *--end = digits[rest & mask];
}

// ---- by conversion letter: o, x, X, and decimal for all others ----

inline unsigned digit_count(uint64_t value, unsigned letter) {
    switch (letter) {
    case 'x':
    case 'X': return binary_digit_count(value, 4);
    case 'o': return binary_digit_count(value, 3);
    default: return decimal_digit_count(value);
    }
}

template <typename Char>
inline void write_digits(Char *to, unsigned count, uint64_t value, unsigned letter) {
    Char *end = to + count;
    switch (letter) {
    case 'x': return write_binary(end, count, value, 4, lower_digits<Char>);
    case 'X': return write_binary(end, count, value, 4, upper_digits<Char>);
    case 'o': return write_binary(end, count, value, 3, lower_digits<Char>);
    default: return write_decimal(end, count, value);
    }
}

} // namespace vexrt
