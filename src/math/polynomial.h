// Polynomials by Horner's rule, the coefficient of the highest degree first. Every step rounds.
#pragma once

namespace vexrt {

template <unsigned count>
inline double polynomial(const double (&coefficients)[count], double x) {
    double sum = coefficients[0];
#pragma clang loop unroll(full)
    for (unsigned i = 1; i < count; ++i) sum = sum * x + coefficients[i];
    return sum;
}

} // namespace vexrt
