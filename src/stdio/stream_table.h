// The table of streams; what stays inside this folder.
#pragma once

#include "core/errno.h"
#include "stdio/stream.h"

namespace vexrt {

constexpr unsigned stream_limit = stream_lock_count;
constexpr unsigned standard_stream_count = 3;
constexpr unsigned automatic_buffer_size = BUFSIZ;

// A slot is empty, or holds a record; a record with flags 0 is closed and may be used again.
extern Stream *stream_table[stream_limit];

extern Stream standard_input __asm__("___stdin");
extern Stream standard_output __asm__("___stdout");
extern Stream standard_error __asm__("___stderr");

// A free record, marked as taken; null with EMFILE when no slot is left, with ENOMEM without
// memory. Caller holds lock 6.
Stream *allocate_stream(bool custom);

// Sees to it that all streams are closed at exit; costs nothing after the first time.
void register_close_at_exit();

// Puts every pointer at the inline buffer and clears the rest but for the flags and the slot.
void reset_buffers(Stream &stream);

// Whether there is a byte-wise pushback, and the bytes behind it.
inline bool has_pushback(const Stream &s) { return s.unget_ptr < s.inline_buf; }

// Lock 6 for a scope: taken before any stream's lock, never after one.
class StreamTableLocked : Locked {
public:
    StreamTableLocked() : Locked(numbered_lock(lock_streams)) {}
};

// What fflush() does for one stream. 0 or -1.
int flush_for_user(Stream &stream);

// Closes a stream whose lock and lock 6 are held. The record may be gone afterwards. 0 or -1.
int close_stream(Stream &stream);

// Calls `worker(stream)` with the lock held; EINVAL and `failure` for a null stream.
template <typename Result, typename Worker>
inline Result with_stream(FILE *file, Result failure, Worker worker) {
    if (__builtin_expect(!file, false)) {
        set_errno(EINVAL);
        return failure;
    }
    Stream &stream = stream_of(file);
    StreamLocked guard(stream);
    return worker(stream);
}

// What lies below a stream: the functions of a custom one, else its descriptor.
int read_below(Stream &stream, char *to, unsigned count);
int write_below(Stream &stream, const char *from, unsigned count);
int64_t seek_below(Stream &stream, int64_t offset, int origin);

} // namespace vexrt
