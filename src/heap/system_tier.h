// The system's tier: blocks of the library's private heap, for large requests and for all when the
// small tier is exhausted. The word before the program's memory holds the address of the underlying
// block. The system serialises its heap itself.
#pragma once

#include <stddef.h>

namespace vexrt {

constexpr size_t default_alignment = 8;

enum class Fill : unsigned { none = 0, zero = 8 }; // as HeapAlloc takes them

bool create_system_heap();
void destroy_system_heap();

// `alignment` is a power of two of at least 4. Null when there is no memory.
void *system_allocate(size_t size, size_t alignment, Fill fill = Fill::none);
void *system_resize(void *block, size_t size);
void system_release(void *block);
size_t system_usable_size(const void *block); // 0 when the system does not know the block

bool system_block_is_valid(const void *block);
bool system_heap_is_valid();

} // namespace vexrt
