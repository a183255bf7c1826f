#include "heap/heap.h"
#include "stdio/stream_table.h"

#include <io.h>

namespace vexrt {

namespace {

int close_below(Stream &s) {
    if (s.is_custom()) {
        auto &custom = static_cast<CustomStream &>(s);
        return custom.close_fn(&custom);
    }
    return s.fd >= 0 ? _close(s.fd) : 0;
}

} // namespace

int close_stream(Stream &s) {
    int result = flush(s);
    if (s.flags & SF_OWNBUF) heap_release(s.base);
    s.base = nullptr;
    if (close_below(s) != 0) result = -1;
    if (s.tmpname) {
        if (remove(s.tmpname) != 0) result = -1;
        heap_release(s.tmpname);
        s.tmpname = nullptr;
    }
    if (s.flags & SF_HEAP) {
        stream_table[s.index] = nullptr;
        heap_release(&s);
    } else {
        s.flags = 0;
        reset_buffers(s);
    }
    return result;
}

} // namespace vexrt

using namespace vexrt;

extern "C" int fclose(FILE *file) {
    if (!file) return EOF;
    StreamTableLocked table;
    Stream &stream = stream_of(file);
    // The record may be gone when the lock is given back: the lock is found by its number now.
    Locked guard(stream_lock(stream.index));
    return close_stream(stream);
}
