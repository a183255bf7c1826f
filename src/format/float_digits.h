// The digits of a floating-point number: the first stage of its way to text.
#pragma once

#include <stdint.h>

namespace vexrt {

// Digit characters with an exponent. The place in front of the first digit is free, for a carry.
struct FloatDigits {
    static constexpr int decimal_limit = 19; // significant digits that are generated
    static constexpr int hex_limit = 33;
    static constexpr int capacity = 48;

    char storage[capacity];
    char *first;
    int count;    // below 1: the value is zero as far as it is printed
    int exponent; // of the first digit: of ten, or of two for hexadecimal digits

    // `value` is finite, not zero, and its sign does not matter.
    void generate_decimal(double value, char style, int64_t precision);
    // `precision` -1: as many digits as the value needs.
    void generate_hex(double value, int precision, bool upper);

private:
    template <int base, int width>
    char *write_chunk(char *to, uint64_t chunk);
    template <int base>
    void round_at(int64_t position, int generated, int carry_exponent);
};

} // namespace vexrt
