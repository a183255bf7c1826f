// Inverse hyperbolic functions of small arguments.
// Made by tools/math/elementary.py; do not edit.
// clang-format off
#pragma once

namespace vexrt {

// (asinh x - x) / x^3 and (atanh x - x) / x^3 in x^2 for |x| up to 1/2
inline constexpr double asinh_tail[] = {
    0x1.ee3fd77d44d42p-10, -0x1.4733e5158e0e1p-8, 0x1.f38921b605d54p-8, -0x1.3a4aeece7e69cp-7,
    0x1.79b0dbdcdfc75p-7, -0x1.c983b8d12e853p-7, 0x1.1c4e072f36dc7p-6, -0x1.6e8b9ab4638efp-6,
    0x1.f1c71c3bee026p-6, -0x1.6db6db6d5b365p-5, 0x1.3333333332f5fp-4, -0x1.5555555555555p-3,
};
inline constexpr double atanh_tail[] = {
    0x1.b016cba23eee4p-3, -0x1.27f230f3831a3p-3, 0x1.15aa7698edf42p-3, 0x1.92cc88a36f708p-7,
    0x1.bdcd3cefa72cep-5, 0x1.a6c53053bf30cp-5, 0x1.e2c342108eb1fp-5, 0x1.1108e26d64a6dp-4,
    0x1.3b1417e6e07dfp-4, 0x1.745d1406b992ep-4, 0x1.c71c71d6cc5d1p-4, 0x1.249249247e911p-3,
    0x1.9999999999ad1p-3, 0x1.5555555555555p-2,
};
// (acosh(1 + t) / sqrt(2 t) - 1) / t for t up to 1/2
inline constexpr double acosh_tail[] = {
    0x1.ee3fd77d44d42p-22, -0x1.4733e5158e0e1p-19, 0x1.f38921b605d54p-18, -0x1.3a4aeece7e69cp-16,
    0x1.79b0dbdcdfc75p-15, -0x1.c983b8d12e853p-14, 0x1.1c4e072f36dc7p-12, -0x1.6e8b9ab4638efp-11,
    0x1.f1c71c3bee026p-10, -0x1.6db6db6d5b365p-8, 0x1.3333333332f5fp-6, -0x1.5555555555555p-4,
};

} // namespace vexrt
