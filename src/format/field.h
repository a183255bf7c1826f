// One conversion directive and the field that it makes.
#pragma once

#include <stdint.h>

namespace vexrt {

enum Flag : uint16_t {
    flag_space = 0x01,
    flag_plus = 0x02,
    flag_left = 0x04,
    flag_alternate = 0x08,
    flag_zero = 0x10,
};

// What stands between '%' and the conversion letter.
struct Directive {
    unsigned flags;
    unsigned width;
    int precision;   // -1: none was given
    unsigned length; // the length letter; 'b' for hh, 'q' for ll and I64; 0: none
};

// A field is written as: blanks, prefix, leading zeros, body, middle zeros, tail, trailing zeros,
// blanks. The tail stands right behind the body in memory.
template <typename Char>
struct Field {
    const Char *body;
    unsigned body_length, tail_length;
    unsigned prefix_length;
    unsigned leading_zeros, middle_zeros, trailing_zeros;
    Char prefix[4];

    void add_prefix(unsigned c) { prefix[prefix_length++] = static_cast<Char>(c); }
    uint64_t length() const {
        return uint64_t{prefix_length} + leading_zeros + body_length + middle_zeros + tail_length +
               trailing_zeros;
    }
};

} // namespace vexrt
