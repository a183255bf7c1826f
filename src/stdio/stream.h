// Streams as the rest of the library sees them: the record behind FILE and the unlocked workers.
// A worker assumes that the stream's lock is held.
#pragma once

#include "core/lock.h"

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <wchar.h>

namespace vexrt {

enum StreamFlag : uint32_t {
    SF_READ = 0x1,
    SF_WRITE = 0x2,
    SF_APPEND = 0x4,
    SF_TRUNC = 0x8,
    SF_CREATE = 0x10,
    SF_BINARY = 0x20, // positions count bytes one for one
    SF_OWNBUF = 0x40, // the library allocated `base`
    SF_HEAP = 0x80,   // the record is on the heap
    SF_EOF = 0x100,
    SF_ERR = 0x200,
    SF_LINEBUF = 0x400, // neither this nor the next: fully buffered
    SF_NOBUF = 0x800,
    SF_READING = 0x1000, // the last transfer was a read
    SF_WRITING = 0x2000, // the last transfer was a write
    SF_BYTE = 0x4000,    // orientation
    SF_WIDE = 0x8000,
    SF_UMODE = 0x10000,
    SF_CUSTOM = 0x20000, // transfers go through the record's functions
    SF_EXCL = 0x40000,
    SF_CCS_UNICODE = 0x80000,
    SF_CCS_UTF16LE = 0x100000,
    SF_CCS_UTF8 = 0x200000,
};

struct Stream {
    uint32_t flags;
    int fd; // -1: none
    char *base, *end;
    char *pos;
    char *read_end;      // of the valid data
    char *put_limit;     // a byte may be stored while pos is below it
    char *unget_ptr;     // at inline_buf when nothing is pushed back
    wchar_t *wunget_ptr; // at saved_read_end when nothing is pushed back
    wchar_t wunget_area[2];
    char *saved_read_end; // the real read_end while pushed-back bytes are served
    char *wide_read_end;
    char *wide_put_limit;
    mbstate_t conv_state;
    char *tmpname; // of a file to delete on close
    char unget_area[8];
    char inline_buf[1];
    unsigned index; // slot in the stream table; selects the lock

    bool is_custom() const { return flags & SF_CUSTOM; }
    // Whether a byte may be stored and nothing else need be done.
    bool has_plain_room() const { return pos < put_limit && !(flags & (SF_LINEBUF | SF_NOBUF)); }
    wchar_t *wide_unget_end() { return wunget_area + 2; }
};
static_assert(sizeof(Stream) == sizeof(FILE));
static_assert(offsetof(Stream, wunget_area) == 9 * 4);
static_assert(offsetof(Stream, saved_read_end) == 10 * 4);
static_assert(offsetof(Stream, conv_state) == 13 * 4);
static_assert(offsetof(Stream, inline_buf) == 18 * 4);
static_assert(offsetof(Stream, unget_area) + 8 == offsetof(Stream, inline_buf));

// A stream whose data is not behind a descriptor.
struct CustomStream : Stream {
    int64_t (*seek_fn)(CustomStream *, int64_t offset, int origin);
    int (*read_fn)(CustomStream *, char *to, unsigned length);
    int (*write_fn)(CustomStream *, const char *from, unsigned length);
    int (*close_fn)(CustomStream *);
    unsigned char owner_state[28];
};

inline Stream &stream_of(FILE *file) { return *reinterpret_cast<Stream *>(file); }
inline FILE *file_of(Stream &stream) { return reinterpret_cast<FILE *>(&stream); }

// Holds a stream's lock for a scope.
class StreamLocked : Locked {
public:
    explicit StreamLocked(Stream &stream) : Locked(stream_lock(stream.index)) {}
};

// Transfers. `fill`: 1 bytes available, 0 end of file, -1 error. `make_room`, `flush`: 0 or -1.
int fill(Stream &stream);
int wide_fill(Stream &stream);
int make_room(Stream &stream);
int make_wide_room(Stream &stream, unsigned size); // for that many bytes at once
int flush(Stream &stream);
int flush_all();
int get_byte_slow(Stream &stream);
int put_byte_slow(int c, Stream &stream);
int unget_byte(int c, Stream &stream);
size_t read_block(void *to, size_t size, size_t count, Stream &stream);
size_t write_block(const void *from, size_t size, size_t count, Stream &stream);

inline int get_byte(Stream &s) {
    if (s.pos < s.read_end) return static_cast<unsigned char>(*s.pos++);
    return get_byte_slow(s);
}

inline int put_byte(int c, Stream &s) {
    if (s.has_plain_room()) return static_cast<unsigned char>(*s.pos++ = static_cast<char>(c));
    return put_byte_slow(c, s);
}

// Writes all of a text: true when it went.
inline bool write_all(const char *text, size_t length, Stream &stream) {
    return write_block(text, 1, length, stream) == length;
}

// Lends a terminal's standard stream a buffer for the length of one output call, so that the call
// reaches the terminal in one piece.
class LentBuffer {
public:
    explicit LentBuffer(Stream &stream);
    ~LentBuffer();
    LentBuffer(const LentBuffer &) = delete;
    LentBuffer &operator=(const LentBuffer &) = delete;

private:
    Stream *borrower_; // null: nothing was lent
};

} // namespace vexrt
