// Blocks of bytes.
//
// By the plain rule all data passes through the buffer. Where that makes no difference to what
// anybody can see (binary data behind a descriptor, whole buffers), it goes straight between the
// descriptor and the caller, in the same amounts.

#include "io/io.h"
#include "stdio/stream_table.h"

#include <limits.h>
#include <string.h>

namespace vexrt {

namespace {

// size * count, or 0 when that is nothing or does not fit: then nothing is transferred.
size_t total_size(size_t size, size_t count) {
    size_t total;
    return __builtin_mul_overflow(size, count, &total) ? 0 : total;
}

bool is_binary_descriptor(const Stream &s) {
    if (s.is_custom()) return false;
    Descriptor *descriptor = open_descriptor(s.fd);
    return descriptor && !descriptor->is_text();
}

size_t smaller(size_t a, size_t b) { return a < b ? a : b; }

size_t take_pushback(Stream &s, char *to, size_t wanted) {
    if (!has_pushback(s) || !(s.flags & SF_BYTE)) return 0;
    size_t count = smaller(wanted, static_cast<size_t>(s.inline_buf - s.unget_ptr));
    memcpy(to, s.unget_ptr, count);
    s.unget_ptr += count;
    return count;
}

// Reads whole buffers' worth of bytes to the caller. 0: not possible here; the buffer then takes
// its turn, and with it end of file and errors.
size_t read_directly(Stream &s, char *to, size_t wanted) {
    size_t buffer = static_cast<size_t>(s.end - s.base);
    size_t amount = smaller(wanted, INT_MAX) / buffer * buffer;
    if (amount < 2 * buffer || s.base == s.inline_buf || (s.flags & SF_EOF) ||
        (s.flags & (SF_READ | SF_WRITING | SF_WIDE)) != SF_READ || !is_binary_descriptor(s))
        return 0;
    int count = read_below(s, to, static_cast<unsigned>(amount));
    if (count <= 0) return 0;
    s.flags |= SF_READING | SF_BYTE;
    s.pos = s.read_end = s.put_limit = s.base;
    return static_cast<size_t>(count);
}

size_t read_bytes(Stream &s, char *to, size_t total) {
    size_t done = take_pushback(s, to, total);
    while (done < total) {
        if (s.saved_read_end) {
            s.read_end = s.saved_read_end;
            s.saved_read_end = nullptr;
        }
        if (s.pos >= s.read_end) {
            if (size_t count = read_directly(s, to + done, total - done)) {
                done += count;
                continue;
            }
            if (fill(s) < 1) break;
        }
        size_t count = smaller(total - done, static_cast<size_t>(s.read_end - s.pos));
        memcpy(to + done, s.pos, count);
        s.pos += count;
        done += count;
    }
    return done;
}

// How much of `left` bytes may go straight to the descriptor now that the buffer is empty: all of
// it when nothing is buffered, else as many whole buffers as there are.
size_t direct_amount(const Stream &s, size_t left) {
    if (s.pos != s.base || s.is_custom() || (s.flags & SF_LINEBUF)) return 0;
    if (s.flags & SF_NOBUF) return left;
    size_t buffer = static_cast<size_t>(s.end - s.base);
    return left >= 2 * buffer && is_binary_descriptor(s) ? left / buffer * buffer : 0;
}

// Writes to the descriptor; `counted` is what of it the plain rule would have taken from the
// caller.
bool write_directly(Stream &s, const char *from, size_t amount, size_t &counted) {
    for (size_t done = 0; done < amount;) {
        int count =
            write_below(s, from + done, static_cast<unsigned>(smaller(amount - done, INT_MAX)));
        if (count < 1) {
            size_t buffer = s.flags & SF_NOBUF ? 1 : static_cast<size_t>(s.end - s.base);
            counted = smaller(done / buffer * buffer + buffer, amount);
            s.pos = s.read_end = s.wide_put_limit = s.base;
            s.flags |= SF_ERR;
            return false;
        }
        done += static_cast<size_t>(count);
    }
    counted = amount;
    return true;
}

// The bytes up to and including the next LF on a line-buffered stream, else all of them.
size_t chunk_length(const Stream &s, const char *from, size_t left) {
    if (!(s.flags & SF_LINEBUF)) return left;
    const void *line_end = memchr(from, '\n', left);
    return line_end ? static_cast<size_t>(static_cast<const char *>(line_end) - from) + 1 : left;
}

size_t write_bytes(Stream &s, const char *from, size_t total) {
    size_t done = 0;
    while (done < total) {
        if (s.pos >= s.put_limit && make_room(s) != 0) break;
        if (size_t amount = direct_amount(s, total - done)) {
            size_t counted;
            bool sound = write_directly(s, from + done, amount, counted);
            done += counted;
            if (!sound) return done;
            continue;
        }
        size_t chunk = chunk_length(s, from + done, total - done);
        size_t count = smaller(chunk, static_cast<size_t>(s.put_limit - s.pos));
        memcpy(s.pos, from + done, count);
        s.pos += count;
        done += count;
        bool line_complete = count == chunk && (s.flags & SF_LINEBUF) && s.pos[-1] == '\n';
        if (line_complete && flush(s) != 0) break;
    }
    if (s.flags & SF_NOBUF) flush(s);
    return done;
}

} // namespace

size_t read_block(void *to, size_t size, size_t count, Stream &stream) {
    size_t total = total_size(size, count);
    return total ? read_bytes(stream, static_cast<char *>(to), total) / size : 0;
}

size_t write_block(const void *from, size_t size, size_t count, Stream &stream) {
    size_t total = total_size(size, count);
    return total ? write_bytes(stream, static_cast<const char *>(from), total) / size : 0;
}

} // namespace vexrt

using namespace vexrt;

extern "C" size_t fread(void *to, size_t size, size_t count, FILE *file) {
    return with_stream(file, size_t(0), [=](Stream &s) { return read_block(to, size, count, s); });
}

extern "C" size_t fwrite(const void *from, size_t size, size_t count, FILE *file) {
    return with_stream(file, size_t(0),
                       [=](Stream &s) { return write_block(from, size, count, s); });
}
