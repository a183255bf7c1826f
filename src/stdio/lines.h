// Lines of narrow and of wide text: what both share.
#pragma once

#include "core/errno.h"
#include "stdio/stream.h"

#include <limits.h>
#include <stdlib.h>

namespace vexrt {

// What a read up to a delimiter came to.
struct LineRead {
    size_t length;  // characters stored, the delimiter included
    bool delimited; // the delimiter was met
};

// Store characters up to and including `delimiter`, at most `room` of them.
LineRead read_until(Stream &s, char *to, size_t room, int delimiter);
LineRead read_until(Stream &s, wchar_t *to, size_t room, int delimiter);

// Failed: nothing was read before the end, or an error came. The error of an earlier call does not
// count.
inline bool failed(const LineRead &line, const Stream &s, uint32_t flags_before) {
    return line.length == 0 || (s.flags & ~flags_before & SF_ERR);
}

template <typename Char>
Char *get_line(Stream &s, Char *to, size_t room) {
    uint32_t before = s.flags;
    LineRead line = read_until(s, to, room, '\n');
    if (room && failed(line, s, before)) return nullptr;
    to[line.length] = 0;
    return to;
}

// Sees to room for `needed` characters in the caller's block. errno is set where it fails.
template <typename Char>
bool reserve(Char *&block, size_t &capacity, size_t needed) {
    constexpr size_t first_capacity = 128;
    if (block && needed <= capacity) return true;
    if (needed > INT_MAX / sizeof(Char)) {
        set_errno(ERANGE);
        return false;
    }
    size_t wanted = block && capacity ? capacity : first_capacity;
    while (wanted < needed) wanted *= 2;
    auto *grown = static_cast<Char *>(realloc(block, wanted * sizeof(Char)));
    if (!grown) return false;
    block = grown;
    capacity = wanted;
    return true;
}

template <typename Char>
ssize_t get_delimited(Stream &s, Char *&block, size_t &capacity, int delimiter) {
    uint32_t before = s.flags;
    size_t length = 0;
    if (!block) capacity = 0;
    for (;;) {
        if (!reserve(block, capacity, length + 2)) return -1;
        LineRead part = read_until(s, block + length, capacity - length - 1, delimiter);
        length += part.length;
        bool full = length == capacity - 1;
        if (part.delimited || !full) {
            if (failed({length, part.delimited}, s, before)) return -1;
            block[length] = 0;
            return static_cast<ssize_t>(length);
        }
    }
}

} // namespace vexrt
