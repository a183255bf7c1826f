#include "heap/system_tier.h"

#include "platform/kernel32.h"

#include <stdint.h>
#include <string.h>

namespace vexrt {

namespace {

HANDLE system_heap;

void *&underlying_block(const void *block) {
    return *(static_cast<void **>(const_cast<void *>(block)) - 1);
}

// The first aligned address that leaves a word in front.
void *aligned_in(void *underlying, size_t alignment) {
    auto address = reinterpret_cast<uintptr_t>(underlying) + sizeof(void *) + alignment - 1;
    return reinterpret_cast<void *>(address & ~(alignment - 1));
}

size_t distance(const void *from, const void *to) {
    return static_cast<size_t>(static_cast<const char *>(to) - static_cast<const char *>(from));
}

// The size of the underlying block; 0 when that is more than there can be.
size_t underlying_size(size_t size, size_t alignment) {
    size_t total;
    if (__builtin_add_overflow(size, alignment, &total) ||
        __builtin_add_overflow(total, sizeof(void *), &total))
        return 0;
    return total;
}

void *place(void *underlying, size_t alignment) {
    void *block = aligned_in(underlying, alignment);
    underlying_block(block) = underlying;
    return block;
}

void *resize_underlying(void *block, size_t size) {
    void *underlying = underlying_block(block);
    size_t offset = distance(underlying, block);
    size_t total = underlying_size(size, default_alignment);
    void *grown = total ? HeapReAlloc(system_heap, 0, underlying, total) : nullptr;
    if (!grown) return nullptr;
    auto *content = static_cast<char *>(grown) + offset;
    void *moved = aligned_in(grown, default_alignment);
    if (moved != content) memmove(moved, content, size);
    return place(grown, default_alignment);
}

void *move_to_new(void *block, size_t size) {
    void *moved = system_allocate(size, default_alignment);
    if (!moved) return nullptr;
    size_t old_size = system_usable_size(block);
    memcpy(moved, block, old_size < size ? old_size : size);
    system_release(block);
    return moved;
}

} // namespace

bool create_system_heap() {
    system_heap = HeapCreate(0, 0, 0);
    return system_heap != nullptr;
}

void destroy_system_heap() {
    HeapDestroy(system_heap);
    system_heap = nullptr;
}

void *system_allocate(size_t size, size_t alignment, Fill fill) {
    size_t total = underlying_size(size, alignment);
    void *underlying = total ? HeapAlloc(system_heap, static_cast<DWORD>(fill), total) : nullptr;
    return underlying ? place(underlying, alignment) : nullptr;
}

// A block with a larger alignment may not lie where the default one would put it; the system cannot
// move that one along.
void *system_resize(void *block, size_t size) {
    if (aligned_in(underlying_block(block), default_alignment) == block)
        return resize_underlying(block, size);
    return move_to_new(block, size);
}

void system_release(void *block) { HeapFree(system_heap, 0, underlying_block(block)); }

size_t system_usable_size(const void *block) {
    void *underlying = underlying_block(block);
    SIZE_T size = HeapSize(system_heap, 0, underlying);
    size_t offset = distance(underlying, block);
    return size == static_cast<SIZE_T>(-1) || size < offset ? 0 : size - offset;
}

bool system_block_is_valid(const void *block) {
    return HeapValidate(system_heap, 0, underlying_block(block));
}

bool system_heap_is_valid() { return HeapValidate(system_heap, 0, nullptr); }

} // namespace vexrt
