// A decimal number of up to 27 digits, rounded to the nearest binary one.
#pragma once

#include <stdint.h>

namespace vexrt {

// An integer below 2^96, least significant word first.
struct Significand {
    uint32_t words[3];

    bool is_zero() const { return !(words[0] | words[1] | words[2]); }

    void multiply_add(uint32_t factor, uint32_t addend) {
        uint64_t carry = addend;
        for (uint32_t &word : words) {
            carry += static_cast<uint64_t>(word) * factor;
            word = static_cast<uint32_t>(carry);
            carry >>= 32;
        }
    }
};

// A significand with its top bits in one word: value = (bits + fraction) * 2^exponent, where the
// top bit of `bits` is set and the fraction is 0 unless `inexact`.
struct Normalised {
    uint64_t bits;
    int exponent;
    bool inexact;
};
Normalised normalise(const Significand &significand); // not zero

// significand * 10^power, correctly rounded to nearest, ties to even, whatever the rounding mode;
// 0 and infinity beyond the limits. The significand is at most 10^27.
template <typename Float>
Float decimal_to_binary(const Significand &significand, int power);

} // namespace vexrt
