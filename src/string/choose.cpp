#include "string/kernels.h"

#include "core/cpu.h"

namespace vexrt {

namespace {

void choose_kernels() {
    if (cpu_has_avx2()) kernels = avx2_kernels;
}

// Run at attach, once the processor is known.
#pragma section(".CRT$XCU", read)
[[gnu::used]] __declspec(allocate(".CRT$XCU")) void (*const at_attach)() = choose_kernels;

} // namespace

} // namespace vexrt
