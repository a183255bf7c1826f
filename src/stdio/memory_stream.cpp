// Streams whose data is in memory: of a fixed size for fmemopen, growing for open_memstream and its
// wide form. They are custom streams; the stream layer buffers them as it does files.

#include "core/errno.h"
#include "heap/heap.h"
#include "stdio/mode_string.h"
#include "stdio/stream_table.h"
#include "stdio/wide.h"

#include <limits.h>
#include <stdlib.h>
#include <string.h>
#include <wchar.h>

namespace vexrt {

namespace {

// Lies in the stream's record. Sizes and positions are bytes.
struct Memory {
    char *buffer;
    uint32_t size; // growing streams: what has been allocated, without the terminator
    uint32_t position;
    uint32_t length;
    union {
        uint32_t owned; // bit 0: the buffer is the stream's
        struct {
            void **buffer_result;
            size_t *size_result;
        };
    };
};
static_assert(sizeof(Memory) <= sizeof(CustomStream::owner_state));

Memory &memory_of(CustomStream *stream) { return *reinterpret_cast<Memory *>(stream->owner_state); }

// Deliberately, an offset from the end counts backwards. -1 for what is no position.
template <bool bounded>
int64_t seek_memory(CustomStream *stream, int64_t offset, int origin) {
    Memory &memory = memory_of(stream);
    if (offset < INT_MIN || offset > INT_MAX) return -1;
    auto distance = static_cast<uint32_t>(offset);
    uint32_t end = stream->flags & SF_BINARY ? memory.size : memory.length;
    uint32_t target;
    switch (origin) {
    case SEEK_SET: target = distance; break;
    case SEEK_CUR: target = memory.position + distance; break;
    case SEEK_END: target = end - distance; break;
    default: return -1;
    }
    if (bounded ? target > memory.size : target > INT_MAX) return -1;
    return memory.position = target;
}

int read_memory(CustomStream *stream, char *to, unsigned count) {
    Memory &memory = memory_of(stream);
    uint32_t left = memory.position < memory.size ? memory.size - memory.position : 0;
    if (count > left) count = left;
    if (count == 0) return 0; // nothing becomes longer where a seek went beyond the end
    memcpy(to, memory.buffer + memory.position, count);
    memory.position += count;
    if (memory.length < memory.position) memory.length = memory.position;
    return static_cast<int>(count);
}

// ---- of a fixed size ----

// A text is kept terminated while it grows.
int write_fixed(CustomStream *stream, const char *from, unsigned count) {
    Memory &memory = memory_of(stream);
    bool terminated = !(stream->flags & SF_BINARY) && !(count && from[count - 1] == '\0');
    uint32_t room = memory.size - memory.position;
    if (count + terminated > room) {
        if (room <= terminated) {
            set_errno(ENOSPC);
            return 0;
        }
        count = room - terminated;
    }
    memcpy(memory.buffer + memory.position, from, count);
    memory.position += count;
    if (memory.position > memory.length) {
        memory.length = memory.position;
        if (terminated) memory.buffer[memory.length] = '\0';
    }
    return static_cast<int>(count);
}

int close_fixed(CustomStream *stream) {
    Memory &memory = memory_of(stream);
    if (memory.owned) heap_release(memory.buffer);
    return 0;
}

// ---- growing ----

// Growth is exact. What was skipped by a seek is zero.
template <typename Char>
bool grow(Memory &memory, uint32_t size) {
    auto *buffer = static_cast<char *>(realloc(memory.buffer, size + sizeof(Char)));
    if (!buffer) return false;
    memset(buffer + memory.size, 0, size + sizeof(Char) - memory.size);
    memory.buffer = buffer;
    memory.size = size;
    *memory.buffer_result = buffer;
    *memory.size_result = size / sizeof(Char);
    return true;
}

template <typename Char>
int write_growing(CustomStream *stream, const char *from, unsigned count) {
    Memory &memory = memory_of(stream);
    if (count > INT_MAX - memory.position) return fail_with(ENOMEM);
    uint32_t end = memory.position + count;
    if (end > memory.size && !grow<Char>(memory, end)) return -1;
    memcpy(memory.buffer + memory.position, from, count);
    memory.position = end;
    if (memory.length < end) memory.length = end;
    return static_cast<int>(count);
}

int close_growing(CustomStream *) { return 0; }

// ---- opening ----

// A custom stream with a mode; lock 6 is held. Null for an invalid mode and without memory.
CustomStream *open_custom(const char *mode, int (*close)(CustomStream *)) {
    auto *stream = static_cast<CustomStream *>(allocate_stream(true));
    if (!stream) return nullptr;
    reset_buffers(*stream);
    memory_of(stream) = {};
    stream->close_fn = close;
    uint32_t flags = stream->flags;
    if (!parse_mode(mode, false, flags)) {
        close_stream(*stream);
        return nullptr;
    }
    stream->flags = flags;
    stream->read_fn = read_memory;
    register_close_at_exit();
    return stream;
}

template <typename Char>
FILE *open_growing(Char **buffer, size_t *size) {
    if (!buffer || !size) {
        set_errno(EINVAL);
        return nullptr;
    }
    StreamTableLocked table;
    CustomStream *stream = open_custom("w+", close_growing);
    if (!stream) return nullptr;
    stream->seek_fn = seek_memory<false>;
    stream->write_fn = write_growing<Char>;
    Memory &memory = memory_of(stream);
    memory.buffer_result = reinterpret_cast<void **>(buffer);
    memory.size_result = size;
    *buffer = nullptr;
    *size = 0;
    if (sizeof(Char) == sizeof(wchar_t)) {
        stream->conv_state.__flags = raw_two_bytes;
        stream->flags |= SF_WIDE;
    }
    return file_of(*stream);
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" FILE *fmemopen(void *buffer, size_t size, const char *mode) {
    if (size == 0 || size > INT_MAX || !mode) {
        set_errno(EINVAL);
        return nullptr;
    }
    StreamTableLocked table;
    CustomStream *stream = open_custom(mode, close_fixed);
    if (!stream) return nullptr;
    stream->seek_fn = seek_memory<true>;
    stream->write_fn = write_fixed;
    Memory &memory = memory_of(stream);
    memory.buffer = static_cast<char *>(buffer ? buffer : malloc(size));
    memory.owned = !buffer;
    if (!memory.buffer) {
        close_stream(*stream);
        return nullptr;
    }
    memory.size = size;
    if (!buffer || stream->flags & SF_TRUNC) memory.buffer[0] = '\0';
    const void *end = memchr(memory.buffer, '\0', size);
    memory.length =
        end ? static_cast<uint32_t>(static_cast<const char *>(end) - memory.buffer) : memory.size;
    if (stream->flags & SF_APPEND) memory.position = memory.length;
    return file_of(*stream);
}

extern "C" FILE *open_memstream(char **buffer, size_t *size) { return open_growing(buffer, size); }
extern "C" FILE *open_wmemstream(wchar_t **buffer, size_t *size) {
    return open_growing(buffer, size);
}
