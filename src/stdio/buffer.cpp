// Filling, making room and flushing: what happens at the edges of a stream's buffer.

#include "core/errno.h"
#include "heap/heap.h"
#include "io/io.h"
#include "stdio/stream_table.h"

#include <io.h>

namespace vexrt {

namespace {

// Text is written to a descriptor in pieces whose translation fits one chunk there, so that the
// chunk boundaries, where a byte would be passed over, never fall inside.
constexpr unsigned text_piece = 1023;

constexpr uint32_t buffering = SF_LINEBUF | SF_NOBUF;

// Without memory the stream stays with its one-byte buffer; that is no error.
void provide_buffer(Stream &s) {
    if ((s.flags & buffering) || s.base != s.inline_buf) return;
    auto *buffer = static_cast<char *>(heap_allocate(automatic_buffer_size));
    if (!buffer) {
        s.end = s.base + 1;
        return;
    }
    s.flags |= SF_OWNBUF;
    s.base = s.wide_read_end = s.wide_put_limit = buffer;
    s.end = buffer + automatic_buffer_size;
}

int wrong_direction(Stream &s) {
    s.flags |= SF_ERR | (s.flags & SF_WIDE ? 0u : SF_BYTE);
    return -1;
}

bool is_text(const Stream &s) {
    Descriptor *descriptor = open_descriptor(s.fd);
    return descriptor && descriptor->is_text();
}

} // namespace

int read_below(Stream &s, char *to, unsigned count) {
    if (s.is_custom()) {
        auto &custom = static_cast<CustomStream &>(s);
        return custom.read_fn(&custom, to, count);
    }
    return _read(s.fd, to, count);
}

int write_below(Stream &s, const char *from, unsigned count) {
    if (s.is_custom()) {
        auto &custom = static_cast<CustomStream &>(s);
        return custom.write_fn(&custom, from, count);
    }
    if (count > text_piece && is_text(s)) count = text_piece;
    return _write(s.fd, from, count);
}

int fill(Stream &s) {
    if (s.pos < s.read_end) return 1;
    if (s.flags & SF_EOF) return 0;
    if ((s.flags & (SF_READ | SF_WRITING | SF_WIDE)) != SF_READ) return wrong_direction(s);
    provide_buffer(s);
    s.pos = s.read_end = s.put_limit = s.base;
    int count = read_below(s, s.base, static_cast<unsigned>(s.end - s.base));
    s.flags |= SF_BYTE;
    if (count > 0) {
        s.flags |= SF_READING;
        s.read_end += count;
        return 1;
    }
    if (count < 0) {
        s.flags |= SF_ERR;
        return -1;
    }
    s.flags = (s.flags & ~static_cast<uint32_t>(SF_READING)) | SF_EOF;
    return 0;
}

int make_room(Stream &s) {
    if (s.pos < s.put_limit) return 0;
    if ((s.flags & (SF_WRITE | SF_READING | SF_WIDE)) != SF_WRITE) return wrong_direction(s);
    constexpr uint32_t writing_bytes = SF_WRITING | SF_BYTE;
    if ((s.flags & writing_bytes) == writing_bytes && s.pos >= s.end && flush(s) != 0) return -1;
    if (!(s.flags & buffering) && s.base == s.inline_buf) {
        register_close_at_exit();
        provide_buffer(s);
        s.pos = s.base;
    }
    s.read_end = s.base;
    s.put_limit = s.end;
    s.flags |= SF_WRITING | SF_BYTE;
    return 0;
}

int flush(Stream &s) {
    if (!(s.flags & SF_WRITING)) return 0;
    for (char *from = s.base; from < s.pos;) {
        int count = write_below(s, from, static_cast<unsigned>(s.pos - from));
        if (count < 1) {
            s.pos = s.read_end = s.wide_put_limit = s.base;
            s.flags |= SF_ERR;
            return -1;
        }
        from += count;
    }
    s.pos = s.base;
    char *limit = s.flags & buffering ? s.base : s.end;
    (s.flags & SF_BYTE ? s.put_limit : s.wide_put_limit) = limit;
    return 0;
}

// The direction is open again afterwards: what was written may be read without positioning.
int flush_for_user(Stream &s) {
    if (flush(s) != 0) return -1;
    if ((s.flags & (SF_WRITING | SF_READ)) == (SF_WRITING | SF_READ)) {
        s.flags &= ~static_cast<uint32_t>(SF_WRITING);
        s.put_limit = s.wide_put_limit = s.base;
    }
    return 0;
}

namespace {

// One buffer each: standard output and standard error run under locks of their own.
constexpr unsigned lent_size = 1024;
char lent_buffers[2][lent_size];

void point_at(Stream &s, char *buffer, unsigned size) {
    s.base = s.pos = s.read_end = s.put_limit = s.wide_read_end = s.wide_put_limit = buffer;
    s.end = buffer + size;
}

} // namespace

LentBuffer::LentBuffer(Stream &s) : borrower_(nullptr) {
    if (&s != &standard_output && &s != &standard_error) return;
    if (!_isatty(s.fd) || (s.flags & (SF_NOBUF | SF_OWNBUF)) != SF_NOBUF) return;
    s.flags &= ~static_cast<uint32_t>(SF_NOBUF);
    point_at(s, lent_buffers[&s == &standard_error], lent_size);
    borrower_ = &s;
}

LentBuffer::~LentBuffer() {
    if (!borrower_) return;
    flush(*borrower_);
    borrower_->flags |= SF_NOBUF;
    point_at(*borrower_, borrower_->inline_buf, 1);
}

} // namespace vexrt

using namespace vexrt;

extern "C" int fflush(FILE *file) {
    if (!file) return flush_all();
    return with_stream(file, EOF, [](Stream &stream) { return flush_for_user(stream); });
}
