// m^(-1/3) for m from 1 to 2, and the cube roots of 1/2 and 1/4.
// Made by tools/math/elementary.py; do not edit.
// clang-format off
#pragma once

namespace vexrt {

inline constexpr double inverse_cube_root[] = {
    0x1.c731837107b28p-6, -0x1.bb1bec900c2fdp-3, 0x1.5e8accb9a7d37p-1, -0x1.2992df8a9809cp0,
    0x1.aa913e4c930ecp0,
};
inline constexpr double inverse_cube_root_of_power[] = {
    0x1p0, 0x1.965fea53d6e3dp-1, 0x1.428a2f98d728bp-1,
};

} // namespace vexrt
