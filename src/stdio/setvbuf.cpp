#include "core/errno.h"
#include "heap/heap.h"
#include "stdio/stream_table.h"

#include <limits.h>

namespace vexrt {

namespace {

uint32_t mode_flags(int mode) {
    return mode == _IOLBF ? SF_LINEBUF : mode == _IONBF ? SF_NOBUF : 0;
}

int set_buffer(Stream &s, char *buffer, int mode, size_t size) {
    if (mode != _IOFBF && mode != _IOLBF && mode != _IONBF) return -1;
    if (s.flags & (SF_READING | SF_WRITING)) return -1;
    if (size > INT_MAX) size = INT_MAX;
    uint32_t owned = 0;
    if (size == 0) { // no buffer at all, whatever was asked for
        buffer = s.inline_buf;
        size = 1;
        mode = _IONBF;
    } else if (!buffer) {
        buffer = static_cast<char *>(heap_allocate(size));
        if (!buffer) return -1;
        owned = SF_OWNBUF;
    }
    if (s.flags & SF_OWNBUF) heap_release(s.base);
    constexpr uint32_t replaced = SF_OWNBUF | SF_LINEBUF | SF_NOBUF;
    s.flags = (s.flags & ~replaced) | owned | mode_flags(mode);
    s.base = s.pos = s.read_end = s.put_limit = s.wide_read_end = s.wide_put_limit = buffer;
    s.end = buffer + size;
    register_close_at_exit();
    return 0;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" int setvbuf(FILE *file, char *buffer, int mode, size_t size) {
    return with_stream(file, -1, [=](Stream &s) { return set_buffer(s, buffer, mode, size); });
}

extern "C" void setbuf(FILE *file, char *buffer) {
    setvbuf(file, buffer, buffer ? _IOFBF : _IONBF, BUFSIZ);
}
