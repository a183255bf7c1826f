// What the heap offers to the rest of the library.
#pragma once

#include <stddef.h>

namespace vexrt {

// `malloc` and `free` without the part that touches `errno`: for the per-thread record and the
// locks, which `errno` itself needs.
void *heap_allocate(size_t size);
void heap_release(void *block);

bool heap_create();  // at attach, before anything allocates
void heap_destroy(); // at detach, after everything else

} // namespace vexrt
