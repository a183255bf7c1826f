// Functions cut into intervals of equal width, each with a polynomial around its middle.
#pragma once

#include "math/pair.h"

namespace vexrt {

// A row is the value at the middle, as a sum of two, and the further coefficients by degree.
template <int columns>
inline Pair value_of_piece(const double (&row)[columns], double distance) {
    double sum = row[columns - 1];
#pragma clang loop unroll(full)
    for (int i = columns - 2; i >= 2; --i) sum = sum * distance + row[i];
    return {row[0], row[1] + sum * distance};
}

// At `offset` behind the first interval's beginning; a power of two as the width makes the distance
// exact.
template <int rows, int columns>
inline Pair value_of_pieces(const double (&table)[rows][columns], double offset, double per_unit) {
    int index = truncated_integer(offset * per_unit);
    if (index >= rows) index = rows - 1;
    return value_of_piece(table[index], offset - (index + 0.5) / per_unit);
}

} // namespace vexrt
