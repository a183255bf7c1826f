#include "core/cpu.h"

namespace vexrt {

DWORD cpu_features;

namespace {

struct Registers {
    DWORD eax, ebx, ecx, edx;
};

Registers identify(DWORD leaf) {
    Registers r;
    __asm__ volatile("cpuid"
                     : "=a"(r.eax), "=b"(r.ebx), "=c"(r.ecx), "=d"(r.edx)
                     : "a"(leaf), "c"(0));
    return r;
}

// The instruction exists when the ID bit of the flags register can be toggled.
bool can_identify() {
    constexpr DWORD id_bit = 1 << 21;
    DWORD before, after;
    __asm__ volatile("pushfl\n\t"
                     "pushfl\n\t"
                     "popl %0\n\t"
                     "movl %0, %1\n\t"
                     "xorl %2, %1\n\t"
                     "pushl %1\n\t"
                     "popfl\n\t"
                     "pushfl\n\t"
                     "popl %1\n\t"
                     "popfl"
                     : "=&r"(before), "=&r"(after)
                     : "i"(id_bit));
    return (before ^ after) & id_bit;
}

// Extended control register 0: the system saves the SSE (1) and AVX (2) registers.
bool system_saves_avx() {
    DWORD low, high;
    __asm__ volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
    return (low & 6) == 6;
}

struct FeatureBit {
    DWORD bit;
    CpuFeature feature;
};

constexpr FeatureBit in_edx[] = {{23, cpu_mmx}, {25, cpu_sse}, {26, cpu_sse2}, {24, cpu_fxsr}};
constexpr FeatureBit in_ecx[] = {{0, cpu_sse3}, {9, cpu_ssse3}, {19, cpu_sse41}, {20, cpu_sse42}};
constexpr DWORD osxsave_and_avx = 1 << 27 | 1 << 28;

template <unsigned count>
DWORD features_in(DWORD word, const FeatureBit (&bits)[count]) {
    DWORD features = 0;
    for (const FeatureBit &entry : bits)
        if (word >> entry.bit & 1) features |= entry.feature;
    return features;
}

} // namespace

void probe_cpu() {
    if (!can_identify() || identify(0).eax < 1) return;
    Registers r = identify(1);
    cpu_features = features_in(r.edx, in_edx) | features_in(r.ecx, in_ecx);
    if ((r.ecx & osxsave_and_avx) == osxsave_and_avx && system_saves_avx()) cpu_features |= cpu_avx;
}

} // namespace vexrt
