// Absolute values, and quotients with their remainders. INT_MIN and its like stay as they are.

#include <inttypes.h>
#include <stdlib.h>

namespace {

template <typename Int>
Int absolute(Int value) {
    return value < 0 ? static_cast<Int>(0 - static_cast<unsigned long long>(value)) : value;
}

} // namespace

extern "C" {

int abs(int value) { return absolute(value); }
long labs(long value) { return absolute(value); }
long long llabs(long long value) { return absolute(value); }
intmax_t imaxabs(intmax_t value) { return absolute(value); }

div_t div(int dividend, int divisor) { return {dividend / divisor, dividend % divisor}; }
ldiv_t ldiv(long dividend, long divisor) { return {dividend / divisor, dividend % divisor}; }
lldiv_t lldiv(long long dividend, long long divisor) {
    return {dividend / divisor, dividend % divisor};
}
imaxdiv_t imaxdiv(intmax_t dividend, intmax_t divisor) {
    return {dividend / divisor, dividend % divisor};
}

} // extern "C"
