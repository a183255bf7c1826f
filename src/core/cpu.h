// What the processor can do, found out once at attach.
#pragma once

#include "platform/kernel32.h"

namespace vexrt {

enum CpuFeature : DWORD {
    cpu_mmx = 0x001,
    cpu_sse = 0x002,
    cpu_sse2 = 0x004,
    cpu_sse3 = 0x008,
    cpu_fxsr = 0x010,
    cpu_ssse3 = 0x020,
    cpu_sse41 = 0x040,
    cpu_sse42 = 0x080,
    cpu_avx = 0x100, // and the system saves its registers
};

extern DWORD cpu_features;

void probe_cpu();

// AVX2 is not in the mask; the system already knows, and asking it is far cheaper than the
// processor's own instruction under a hypervisor.
inline bool cpu_has_avx2() {
    return (cpu_features & cpu_avx) && IsProcessorFeaturePresent(PF_AVX2_INSTRUCTIONS_AVAILABLE);
}

} // namespace vexrt
