#include "math/compose.h"

namespace vexrt {

double finish_extreme(Pair value, int power, const Call &call) {
    double sum = value.high + value.low;
    if (sum == 0 || !is_finite(sum)) return sum;
    int field = exponent_field(sum) + power;
    if (field >= 0x7FF) return report(MathError::overflow, call, with_sign_of(infinity, sum));
    if (field < -54) return report(MathError::underflow, call, with_sign_of(0.0, sum));
    double high = value.high, low = value.low;
    scale_truncating(high, power + 1022);
    scale_truncating(low, power + 1022);
    double one = with_sign_of(1.0, high);
    double shifted = one + high;
    shifted += ((one - shifted) + high) + low;
    double rounded = shifted - one;
    double result = with_sign_of(rounded * 0x1p-1022, high);
    // An exact result may come with a rest that is the computation's own error.
    double lost = (high - rounded) + low;
    bool exact = absolute_value(lost) <= 0x1p-60 * absolute_value(high);
    if (exact || absolute_value(result) >= least_normal<double>) return result;
    return report(MathError::underflow, call, result);
}

} // namespace vexrt
