// 64-bit division on 32-bit registers. Division by zero traps, as the processor's own does.
#pragma once

#include <stdint.h>

namespace vexrt {

constexpr uint32_t low(uint64_t value) { return static_cast<uint32_t>(value); }
constexpr uint32_t high(uint64_t value) { return static_cast<uint32_t>(value >> 32); }
constexpr uint64_t join(uint32_t high, uint32_t low) {
    return static_cast<uint64_t>(high) << 32 | low;
}

struct QuotientRemainder32 {
    uint32_t quotient, remainder;
};

// The processor's division; the quotient must fit, that is high(dividend) < divisor.
inline QuotientRemainder32 divide_narrow(uint64_t dividend, uint32_t divisor) {
    QuotientRemainder32 result;
    __asm__("divl %4"
            : "=a"(result.quotient), "=d"(result.remainder)
            : "a"(low(dividend)), "d"(high(dividend)), "rm"(divisor)
            : "cc");
    return result;
}

struct QuotientRemainder {
    uint64_t quotient, remainder;
};

// Shifts divisor and dividend right together until the divisor has 32 bits. The trial quotient is
// then right or one too large.
inline QuotientRemainder divide_by_wide(uint64_t dividend, uint64_t divisor) {
    int shift = 32 - __builtin_clz(high(divisor)); // 1 to 32
    uint64_t quotient = divide_narrow(dividend >> shift, low(divisor >> shift)).quotient;
    uint64_t product_high = (divisor >> 32) * quotient;
    uint64_t product = static_cast<uint64_t>(low(divisor)) * quotient + (product_high << 32);
    bool overflows = high(product_high) || product < product_high << 32;
    if (overflows || product > dividend) {
        --quotient;
        product -= divisor;
    }
    return {quotient, dividend - product};
}

inline QuotientRemainder divide(uint64_t dividend, uint64_t divisor) {
    if (high(divisor)) return divide_by_wide(dividend, divisor);
    uint32_t narrow = low(divisor);
    QuotientRemainder32 upper = {0, high(dividend)};
    if (upper.remainder >= narrow) upper = divide_narrow(upper.remainder, narrow);
    QuotientRemainder32 lower = divide_narrow(join(upper.remainder, low(dividend)), narrow);
    return {join(upper.quotient, lower.quotient), lower.remainder};
}

constexpr uint64_t magnitude(int64_t value) {
    return value < 0 ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
}

constexpr int64_t with_sign(uint64_t value, bool negative) {
    return static_cast<int64_t>(negative ? 0 - value : value);
}

inline int64_t signed_quotient(int64_t dividend, int64_t divisor) {
    return with_sign(divide(magnitude(dividend), magnitude(divisor)).quotient,
                     (dividend < 0) != (divisor < 0));
}

inline int64_t signed_remainder(int64_t dividend, int64_t divisor) {
    return with_sign(divide(magnitude(dividend), magnitude(divisor)).remainder, dividend < 0);
}

} // namespace vexrt
