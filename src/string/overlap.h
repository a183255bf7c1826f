// Whether a bounds-checked copy would run into itself.
#pragma once

#include <stddef.h>
#include <stdint.h>

namespace vexrt {

// Whether the `written` characters at `to` and the `read` ones at `from` share any.
template <typename Char>
bool overlaps(const Char *to, size_t written, const Char *from, size_t read) {
    uintptr_t a = reinterpret_cast<uintptr_t>(to), b = reinterpret_cast<uintptr_t>(from);
    return a < b ? b - a < written * sizeof(Char) : a - b < read * sizeof(Char);
}

} // namespace vexrt
