// What clang calls for 64-bit division on windows-msvc: dividend first, the callee pops.

#include "math/divide64.h"

using namespace vexrt;

extern "C" int64_t __stdcall vexrt_alldiv(int64_t a, int64_t b) __asm__("__alldiv");
extern "C" int64_t __stdcall vexrt_allrem(int64_t a, int64_t b) __asm__("__allrem");
extern "C" uint64_t __stdcall vexrt_aulldiv(uint64_t a, uint64_t b) __asm__("__aulldiv");
extern "C" uint64_t __stdcall vexrt_aullrem(uint64_t a, uint64_t b) __asm__("__aullrem");

int64_t __stdcall vexrt_alldiv(int64_t a, int64_t b) { return signed_quotient(a, b); }
int64_t __stdcall vexrt_allrem(int64_t a, int64_t b) { return signed_remainder(a, b); }
uint64_t __stdcall vexrt_aulldiv(uint64_t a, uint64_t b) { return divide(a, b).quotient; }
uint64_t __stdcall vexrt_aullrem(uint64_t a, uint64_t b) { return divide(a, b).remainder; }
