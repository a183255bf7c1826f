// Floating-point numbers as fields: the second stage of their way to text.
#pragma once

#include "format/field.h"

namespace vexrt {

// The most characters of a body and a tail together: 33 digits, point, exponent.
constexpr unsigned float_room = 48;

// Adds the body, tail and zeros of a floating conversion to a field whose prefix holds the sign.
// The body lies in `room`, which must outlive the field.
template <typename Char>
void make_float_field(Field<Char> &field, Char (&room)[float_room], double value, unsigned letter,
                      const Directive &directive);

} // namespace vexrt
