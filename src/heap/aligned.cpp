// Aligned blocks: aligned_alloc, whose blocks go to free, and _mm_malloc with its own _mm_free.

#include "core/errno.h"
#include "heap/small_heap.h"
#include "heap/system_tier.h"

#include <malloc.h>
#include <stdlib.h>

namespace vexrt {

namespace {

constexpr size_t least_alignment = 4;

bool is_power_of_two_or_zero(size_t value) { return (value & (value - 1)) == 0; }

void *fail(int error) {
    set_errno(error);
    return nullptr;
}

// The small tier serves a request together with the room for aligning it, if that is still small.
void *allocate_small_aligned(size_t alignment, size_t size) {
    size_t enlarged;
    if (__builtin_add_overflow(size, alignment - 1, &enlarged) || enlarged >= __bheap_threshold)
        return nullptr;
    return under_heap_lock([=] { return small_heap.allocate_aligned(alignment, size); });
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" void *aligned_alloc(size_t alignment, size_t size) {
    if (!is_power_of_two_or_zero(alignment) || alignment < least_alignment || size == 0)
        return fail(EINVAL);
    void *block = allocate_small_aligned(alignment, size);
    if (!block) block = system_allocate(size, alignment);
    return block ? block : fail(ENOMEM);
}

extern "C" void *_mm_malloc(size_t size, size_t alignment) {
    if (!is_power_of_two_or_zero(alignment) || alignment + sizeof(void *) > ~size)
        return fail(EINVAL);
    if (alignment < least_alignment) alignment = least_alignment;
    size_t room = alignment - 1 + sizeof(void *), total;
    if (__builtin_add_overflow(size, room, &total)) return fail(ENOMEM);
    void *underlying = malloc(total);
    if (!underlying) return nullptr;
    uintptr_t address = (reinterpret_cast<uintptr_t>(underlying) + room) & ~(alignment - 1);
    auto *block = reinterpret_cast<void **>(address);
    block[-1] = underlying;
    return block;
}

extern "C" void _mm_free(void *block) {
    if (!block) return;
    uintptr_t address = reinterpret_cast<uintptr_t>(block) & ~(sizeof(void *) - 1);
    free(reinterpret_cast<void **>(address)[-1]);
}
