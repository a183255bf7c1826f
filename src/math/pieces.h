// Functions cut into intervals of equal width, each with a polynomial around its middle.
#pragma once

#include "math/pair.h"

namespace vexrt {

// A row is the value at the middle, as a sum of two, and the further coefficients by degree, of
// which the first `used` columns count.
template <int used, int columns>
inline Pair value_of_piece(const double (&row)[columns], double distance) {
    double sum = row[used - 1];
#pragma clang loop unroll(full)
    for (int i = used - 2; i >= 2; --i) sum = sum * distance + row[i];
    return {row[0], row[1] + sum * distance};
}

// At `offset` behind the first interval's beginning; a power of two as the width makes the distance
// exact.
template <int used, int rows, int columns>
inline Pair value_of_columns(const double (&table)[rows][columns], double offset, double per_unit) {
    int index = truncated_integer(offset * per_unit);
    if (index >= rows) index = rows - 1;
    return value_of_piece<used>(table[index], offset - (index + 0.5) / per_unit);
}

template <int rows, int columns>
inline Pair value_of_pieces(const double (&table)[rows][columns], double offset, double per_unit) {
    return value_of_columns<columns>(table, offset, per_unit);
}

// To the precision of float, which takes fewer columns.
template <int used, int rows, int columns>
inline double plain_value_of_pieces(const double (&table)[rows][columns], double offset,
                                    double per_unit) {
    Pair value = value_of_columns<used>(table, offset, per_unit);
    return value.high + value.low;
}

} // namespace vexrt
