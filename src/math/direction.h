// The rounding direction as <fenv.h> tells it: the x87 unit's.
#pragma once

#include <fenv.h>

namespace vexrt {

inline int rounding_direction() {
    unsigned short control;
    __asm__ volatile("fnstcw %0" : "=m"(control));
    return control >> 10 & 3;
}

} // namespace vexrt
