// malloc and its family: a request below the threshold goes to the small tier, and when that fails
// or the request is larger, to the system's.

#include "core/errno.h"
#include "heap/heap.h"
#include "heap/small_heap.h"
#include "heap/system_tier.h"

#include <malloc.h>
#include <stdlib.h>
#include <string.h>

namespace vexrt {

namespace {

[[gnu::always_inline]] inline void *allocate_small_here(size_t size) {
    if (__builtin_expect(size >= __bheap_threshold, false)) return nullptr;
    return under_heap_lock([words = block_words(size)]() __attribute__((always_inline)) {
        return small_heap.allocate(words);
    });
}

[[gnu::noinline]] void *allocate_small(size_t size) { return allocate_small_here(size); }

[[gnu::always_inline]] inline bool release_small(void *block) {
    return under_heap_lock(
        [block]() __attribute__((always_inline)) { return small_heap.release(block); });
}

void *out_of_memory() {
    set_errno(ENOMEM);
    return nullptr;
}

[[gnu::noinline]] void *allocate_large(size_t size) {
    void *block = system_allocate(size, default_alignment);
    return block ? block : out_of_memory();
}

struct Reallocation {
    void *block;
    int error;
};

// Moves a small block when it cannot become `size` bytes where it is. On failure it stays as it
// was.
Reallocation reallocate_small(void *block, size_t size) {
    if (!small_heap.is_block(block)) return {nullptr, EINVAL};
    void *moved = nullptr;
    if (size < __bheap_threshold) {
        Word words = block_words(size);
        if (small_heap.resize(block, words)) return {block, 0};
        moved = small_heap.allocate(words);
    }
    if (!moved) moved = system_allocate(size, default_alignment);
    if (!moved) return {nullptr, ENOMEM};
    size_t old_size = small_heap.usable_size(block);
    memcpy(moved, block, old_size < size ? old_size : size);
    small_heap.release(block);
    return {moved, 0};
}

// A block that has become small moves to the small tier.
void *reallocate_large(void *block, size_t size) {
    if (void *moved = allocate_small(size)) {
        size_t old_size = system_usable_size(block);
        memcpy(moved, block, old_size < size ? old_size : size);
        system_release(block);
        return moved;
    }
    void *resized = system_resize(block, size);
    return resized ? resized : out_of_memory();
}

} // namespace

bool heap_create() { return create_system_heap(); }

void heap_destroy() {
    small_heap.destroy();
    destroy_system_heap();
}

void *heap_allocate(size_t size) {
    void *block = allocate_small(size);
    return block ? block : system_allocate(size, default_alignment);
}

void heap_release(void *block) {
    if (!block) return;
    if (small_heap.owns(block))
        release_small(block);
    else
        system_release(block);
}

} // namespace vexrt

using namespace vexrt;

extern "C" void *malloc(size_t size) {
    void *block = allocate_small_here(size);
    return __builtin_expect(block != nullptr, true) ? block : allocate_large(size);
}

extern "C" void free(void *block) {
    if (!block) return;
    if (!small_heap.owns(block)) return system_release(block);
    if (!release_small(block)) set_errno(EINVAL);
}

extern "C" void *calloc(size_t count, size_t size) {
    size_t total;
    if (__builtin_mul_overflow(count, size, &total)) return nullptr;
    if (void *block = allocate_small(total)) return memset(block, 0, total);
    void *block = system_allocate(total, default_alignment, Fill::zero);
    return block ? block : out_of_memory();
}

extern "C" void *realloc(void *block, size_t size) {
    if (!block) return malloc(size);
    if (size == 0) {
        free(block);
        return nullptr;
    }
    if (!small_heap.owns(block)) return reallocate_large(block, size);
    Reallocation result = under_heap_lock([=] { return reallocate_small(block, size); });
    if (result.error) set_errno(result.error);
    return result.block;
}

extern "C" size_t _msize(void *block) {
    if (!block) return 0;
    if (!small_heap.owns(block)) return system_usable_size(block);
    return under_heap_lock(
        [block] { return small_heap.is_block(block) ? small_heap.usable_size(block) : 0; });
}
