// 64-bit integer operations for generated code. Arguments are on the stack, divisor or count first,
// and the callee removes them.

#include "math/divide64.h"

using namespace vexrt;

static constexpr bool beyond_width(int count) { return static_cast<unsigned>(count) >= 64; }

extern "C" {

int64_t __stdcall ___lldiv(int64_t divisor, int64_t dividend) {
    return signed_quotient(dividend, divisor);
}

int64_t __stdcall ___llmod(int64_t divisor, int64_t dividend) {
    return signed_remainder(dividend, divisor);
}

uint64_t __stdcall ___ulldiv(uint64_t divisor, uint64_t dividend) {
    return divide(dividend, divisor).quotient;
}

uint64_t __stdcall ___ullmod(uint64_t divisor, uint64_t dividend) {
    return divide(dividend, divisor).remainder;
}

int64_t __stdcall ___llmul(int64_t a, int64_t b) {
    return static_cast<int64_t>(static_cast<uint64_t>(a) * static_cast<uint64_t>(b));
}

int64_t __stdcall ___llshl(int count, int64_t value) {
    return beyond_width(count) ? 0 : static_cast<int64_t>(static_cast<uint64_t>(value) << count);
}

int64_t __stdcall ___llshr(int count, int64_t value) {
    return beyond_width(count) ? value >> 63 : value >> count;
}

uint64_t __stdcall ___ullshr(int count, uint64_t value) {
    return beyond_width(count) ? 0 : value >> count;
}

} // extern "C"
