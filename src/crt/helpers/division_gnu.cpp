// What gcc and clang call for 64-bit arithmetic on windows-gnu.

#include "math/divide64.h"

using namespace vexrt;

extern "C" {

int64_t __divdi3(int64_t dividend, int64_t divisor) { return signed_quotient(dividend, divisor); }
int64_t __moddi3(int64_t dividend, int64_t divisor) { return signed_remainder(dividend, divisor); }
uint64_t __udivdi3(uint64_t dividend, uint64_t divisor) {
    return divide(dividend, divisor).quotient;
}
uint64_t __umoddi3(uint64_t dividend, uint64_t divisor) {
    return divide(dividend, divisor).remainder;
}

uint64_t __udivmoddi4(uint64_t dividend, uint64_t divisor, uint64_t *remainder) {
    QuotientRemainder result = divide(dividend, divisor);
    *remainder = result.remainder;
    return result.quotient;
}

int64_t __divmoddi4(int64_t dividend, int64_t divisor, int64_t *remainder) {
    QuotientRemainder result = divide(magnitude(dividend), magnitude(divisor));
    *remainder = with_sign(result.remainder, dividend < 0);
    return with_sign(result.quotient, (dividend < 0) != (divisor < 0));
}

} // extern "C"
