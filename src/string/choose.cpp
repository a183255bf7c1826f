#include "core/cpu.h"
#include "string/kernels.h"

void vexrt::choose_string_kernels() {
    if (cpu_has_avx2()) kernels = avx2_kernels;
}
