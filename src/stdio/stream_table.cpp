#include "stdio/stream_table.h"

#include "heap/heap.h"
#include "io/io.h"
#include "startup/startup.h"

namespace vexrt {

namespace {

char standard_error_buffer[80];

constexpr uint32_t taken = ~static_cast<uint32_t>(SF_HEAP | SF_CUSTOM);

} // namespace

// A standard stream before anything is done with it, on a buffer of `size` bytes.
constexpr Stream initial_stream(Stream &self, uint32_t flags, int fd, char *buffer, unsigned size) {
    Stream stream{};
    stream.flags = flags;
    stream.fd = fd;
    stream.base = stream.pos = stream.read_end = stream.put_limit = buffer;
    stream.wide_read_end = stream.wide_put_limit = buffer;
    stream.end = buffer + size;
    stream.unget_ptr = self.inline_buf;
    stream.wunget_ptr = self.wunget_area + 2;
    stream.index = static_cast<unsigned>(fd);
    return stream;
}

constinit Stream standard_input =
    initial_stream(standard_input, SF_READ, 0, standard_input.inline_buf, 1);
constinit Stream standard_output =
    initial_stream(standard_output, SF_WRITE | SF_NOBUF, 1, standard_output.inline_buf, 1);
constinit Stream standard_error = initial_stream(
    standard_error, SF_WRITE | SF_NOBUF, 2, standard_error_buffer, sizeof standard_error_buffer);

Stream *stream_table[stream_limit] = {&standard_input, &standard_output, &standard_error};

Stream *allocate_stream(bool custom) {
    for (unsigned i = 0; i < stream_limit; ++i) {
        if (Stream *stream = stream_table[i]) {
            if (custom || stream->flags != 0) continue;
            stream->flags = taken;
            return stream;
        }
        void *record = heap_allocate(custom ? sizeof(CustomStream) : sizeof(Stream));
        if (!record) {
            set_errno(ENOMEM);
            return nullptr;
        }
        auto *stream = static_cast<Stream *>(record);
        if (custom)
            *static_cast<CustomStream *>(stream) = CustomStream{};
        else
            *stream = Stream{};
        stream->flags = SF_HEAP | (custom ? SF_CUSTOM : 0u);
        stream->index = i;
        stream_table[i] = stream;
        return stream;
    }
    set_errno(EMFILE);
    return nullptr;
}

void reset_buffers(Stream &stream) {
    Stream fresh{};
    fresh.flags = stream.flags;
    fresh.index = stream.index;
    fresh.fd = -1;
    char *buffer = stream.inline_buf;
    fresh.base = fresh.pos = fresh.read_end = fresh.put_limit = buffer;
    fresh.wide_read_end = fresh.wide_put_limit = buffer;
    fresh.end = buffer + 1;
    fresh.unget_ptr = buffer;
    fresh.wunget_ptr = stream.wide_unget_end();
    stream = fresh;
}

namespace {

// Whether another thread reads and may wait for input without end, holding the stream or, in a call
// past it, the descriptor. The process is not held up by that: there is nothing to be flushed or
// deleted, and the system closes what is left open.
bool waits_for_input(const Stream &s) {
    if (s.flags & SF_WRITING || s.tmpname) return false;
    const Descriptor *descriptor = s.is_custom() ? nullptr : open_descriptor(s.fd);
    return stream_lock(s.index).held_elsewhere() ||
           (descriptor && descriptor->lock.held_elsewhere());
}

// A process that is ending may have been stopped in the middle of the heap: its streams are
// flushed, the records stay.
void close_all() {
    if (threading_mode.owners_gone) {
        flush_all();
        return;
    }
    StreamTableLocked table;
    for (Stream *stream : stream_table) {
        if (!stream || waits_for_input(*stream)) continue;
        Locked guard(stream_lock(stream->index));
        close_stream(*stream);
    }
}

volatile bool close_registered;

} // namespace

// No lock may be taken here that the exit path holds while it waits for a stream.
void register_close_at_exit() {
    if (close_registered || __atomic_exchange_n(&close_registered, true, __ATOMIC_SEQ_CST)) return;
    register_internal_exit_handler(close_all);
}

// A stream that is not being written has nothing to flush, and its lock may be held by a reader
// that waits for input: it is passed over.
int flush_all() {
    StreamTableLocked table;
    int result = 0;
    for (Stream *stream : stream_table) {
        if (!stream || !(stream->flags & SF_WRITING)) continue;
        StreamLocked guard(*stream);
        if (flush_for_user(*stream) != 0) result = -1;
    }
    return result;
}

} // namespace vexrt

using namespace vexrt;

// The first close that fails ends the walk; the streams behind it stay open.
extern "C" int _fcloseall() {
    StreamTableLocked table;
    int closed = 0;
    for (unsigned i = standard_stream_count; i < stream_limit; ++i) {
        Stream *stream = stream_table[i];
        if (!stream || stream->flags == 0) continue;
        Locked guard(stream_lock(i));
        if (close_stream(*stream) != 0) return -1;
        ++closed;
    }
    return closed;
}

extern "C" int _flushall() {
    StreamTableLocked table;
    flush_all();
    int open = 0;
    for (Stream *stream : stream_table) open += stream && stream->flags != 0;
    return open;
}
