// Filling, making room and flushing: what happens at the edges of a stream's buffer.

#include "core/errno.h"
#include "heap/heap.h"
#include "io/io.h"
#include "stdio/stream_table.h"
#include "stdio/wide.h"

#include <io.h>
#include <string.h>

namespace vexrt {

namespace {

// Text is written to a descriptor in pieces whose translation fits one chunk there, so that the
// chunk boundaries, where a character would be passed over, never fall inside, line ends alone
// included: bytes, by encoding.
constexpr unsigned text_pieces[] = {1024, 512, 1024};

constexpr uint32_t buffering = SF_LINEBUF | SF_NOBUF;

// An empty buffer: the pointers of either orientation lie in it.
void point_at(Stream &s, char *buffer, unsigned size) {
    s.base = s.pos = s.read_end = s.put_limit = s.wide_read_end = s.wide_put_limit = buffer;
    s.end = buffer + size;
}

bool wants_buffer(const Stream &s) { return !(s.flags & buffering) && s.base == s.inline_buf; }

// Without memory the stream stays with its one-byte buffer; that is no error.
void provide_buffer(Stream &s) {
    if (!wants_buffer(s)) return;
    auto *buffer = static_cast<char *>(heap_allocate(automatic_buffer_size));
    if (!buffer) {
        s.end = s.base + 1;
        return;
    }
    s.flags |= SF_OWNBUF;
    point_at(s, buffer, automatic_buffer_size);
}

// At the first write of a stream.
void start_writing(Stream &s) {
    if (!wants_buffer(s)) return;
    register_close_at_exit();
    provide_buffer(s);
}

// The length of the first piece of a text. A pair of surrogates is not cut.
unsigned first_piece(const Stream &s, const char *from, unsigned count) {
    Descriptor *descriptor = open_descriptor(s.fd);
    if (!descriptor || !descriptor->is_text()) return count;
    unsigned piece = text_pieces[descriptor->encoding];
    if (count <= piece) return count;
    bool cut =
        descriptor->encoding != encoding_ansi && ends_with_high_surrogate(from, from + piece);
    return cut ? piece - 2 : piece;
}

// What differs between transfers of bytes and of wide characters.
struct Side {
    uint32_t own, other; // orientation
    char *Stream::*read_end;
};
constexpr Side byte_side = {SF_BYTE, SF_WIDE, &Stream::read_end};
constexpr Side wide_side = {SF_WIDE, SF_BYTE, &Stream::wide_read_end};

template <const Side &side>
int wrong_direction(Stream &s) {
    s.flags |= SF_ERR | (s.flags & side.other ? 0u : side.own);
    return -1;
}

template <const Side &side>
int fill_side(Stream &s) {
    if (s.pos < s.*side.read_end) return 1;
    if (s.flags & SF_EOF) return 0;
    if ((s.flags & (SF_READ | SF_WRITING | side.other)) != SF_READ) return wrong_direction<side>(s);
    provide_buffer(s);
    s.pos = s.read_end = s.put_limit = s.wide_read_end = s.wide_put_limit = s.base;
    auto size = static_cast<unsigned>(s.end - s.base);
    if (side.own == SF_WIDE && takes_units(s)) size &= ~1u;
    int count = size ? read_below(s, s.base, size) : -1;
    s.flags |= side.own;
    if (count > 0) {
        s.flags |= SF_READING;
        s.*side.read_end += count;
        return 1;
    }
    if (count < 0) {
        s.flags |= SF_ERR;
        return -1;
    }
    s.flags = (s.flags & ~static_cast<uint32_t>(SF_READING)) | SF_EOF;
    return 0;
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
    if (count > text_pieces[encoding_utf8]) count = first_piece(s, from, count);
    return _write(s.fd, from, count);
}

int fill(Stream &s) { return fill_side<byte_side>(s); }
int wide_fill(Stream &s) { return fill_side<wide_side>(s); }

int make_room(Stream &s) {
    if (s.pos < s.put_limit) return 0;
    if ((s.flags & (SF_WRITE | SF_READING | SF_WIDE)) != SF_WRITE)
        return wrong_direction<byte_side>(s);
    constexpr uint32_t writing_bytes = SF_WRITING | SF_BYTE;
    if ((s.flags & writing_bytes) == writing_bytes && s.pos >= s.end && flush(s) != 0) return -1;
    start_writing(s);
    s.read_end = s.base;
    s.put_limit = s.end;
    s.flags |= SF_WRITING | SF_BYTE;
    return 0;
}

// Units are not cut, and the first half of a pair of surrogates waits for the second.
int make_wide_room(Stream &s, unsigned size) {
    if (s.wide_put_limit - s.pos >= static_cast<int>(size)) return 0;
    if ((s.flags & (SF_WRITE | SF_READING | SF_BYTE)) != SF_WRITE)
        return wrong_direction<wide_side>(s);
    if (s.flags & SF_WRITING && s.end - s.pos < static_cast<int>(size)) {
        bool half = takes_units(s) && ends_with_high_surrogate(s.base, s.pos);
        char waiting[2];
        if (half) memcpy(waiting, s.pos -= 2, 2);
        if (flush(s) != 0) return -1;
        if (half) {
            memcpy(s.pos, waiting, 2);
            s.pos += 2;
        }
    }
    start_writing(s);
    s.wide_read_end = s.base;
    s.wide_put_limit = s.end;
    s.flags |= SF_WRITING | SF_WIDE;
    return 0;
}

int flush(Stream &s) {
    if (!(s.flags & SF_WRITING)) return 0;
    if (takes_units(s) && s.conv_state.__value) {
        wchar_t unit = take_held_unit(s);
        write_below(s, reinterpret_cast<const char *>(&unit), sizeof unit);
    }
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
