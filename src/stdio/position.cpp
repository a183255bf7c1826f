// Positions: where the stream stands as its user sees it, and moving it.
//
// The descriptor is ahead of a reader by what is buffered and behind a writer by the same. On a
// text stream an LF in the buffer stands for two bytes of the file.

#include "core/errno.h"
#include "io/io.h"
#include "stdio/stream_table.h"
#include "stdio/wide.h"

#include <io.h>
#include <limits.h>

namespace vexrt {

namespace {

// UTF-16 units in the encoding of the descriptor; half of a pair of surrogates takes two bytes of
// UTF-8.
int64_t encoded_size(const wchar_t *from, const wchar_t *to, unsigned char encoding) {
    int64_t size = 0;
    for (; from < to; ++from) {
        bool surrogate = (*from & 0xF800) == 0xD800;
        int bytes = encoding != encoding_utf8    ? 2
                    : *from < 0x80               ? 1
                    : *from < 0x800 || surrogate ? 2
                                                 : 3;
        size += *from == L'\n' ? bytes + (encoding == encoding_utf8 ? 1 : 2) : bytes;
    }
    return size;
}

Descriptor *descriptor_of(const Stream &s) {
    return s.is_custom() ? nullptr : open_descriptor(s.fd);
}

int64_t bytes_in_file(const Stream &s, const char *from, const char *to) {
    if (to <= from) return 0;
    Descriptor *descriptor = descriptor_of(s);
    if (s.flags & SF_WIDE && takes_units(s) && descriptor)
        return encoded_size(reinterpret_cast<const wchar_t *>(from),
                            reinterpret_cast<const wchar_t *>(to), descriptor->encoding);
    int64_t count = to - from;
    if (s.flags & (SF_BINARY | SF_CUSTOM)) return count; // nothing is translated
    for (; from < to; ++from) count += *from == '\n';
    return count;
}

// What was pushed back in wide characters.
int64_t wide_pushback_size(const Stream &s) {
    const wchar_t *end = s.wunget_area + 2;
    if (takes_units(s))
        return bytes_in_file(s, reinterpret_cast<const char *>(s.wunget_ptr),
                             reinterpret_cast<const char *>(end));
    int64_t size = 0;
    mbstate_t state = s.conv_state;
    char bytes[multibyte_limit];
    for (const wchar_t *at = s.wunget_ptr; at < end; ++at) {
        int length = encode_character(bytes, *at, state);
        if (length > 0) size += bytes_in_file(s, bytes, bytes + length);
    }
    return size;
}

// A CR at the very end of what was read is in no buffer, but the descriptor stands behind it.
int64_t dropped_return(const Stream &s) {
    Descriptor *descriptor = descriptor_of(s);
    if (!descriptor || !descriptor->dropped_return) return 0;
    return descriptor->encoding == encoding_utf16le ? 2 : 1;
}

int64_t unread_bytes(const Stream &s) {
    const char *read_end = s.saved_read_end ? s.saved_read_end : s.read_end;
    return bytes_in_file(s, s.unget_ptr, s.inline_buf) + bytes_in_file(s, s.pos, read_end) +
           bytes_in_file(s, s.pos, s.wide_read_end) + wide_pushback_size(s) + dropped_return(s);
}

bool is_usable(const Stream &s) { return s.flags & (SF_READ | SF_WRITE); }

int64_t position_error() { return fail_with(EFPOS); }

void discard_buffer(Stream &s) {
    s.pos = s.read_end = s.put_limit = s.wide_read_end = s.wide_put_limit = s.base;
    s.unget_ptr = s.inline_buf;
    s.wunget_ptr = s.wide_unget_end();
    s.saved_read_end = nullptr;
}

bool move_below(Stream &s, int64_t offset, int origin) {
    switch (origin) {
    case SEEK_CUR:
        if (s.flags & SF_READING) offset -= unread_bytes(s);
        // With nothing to move, the descriptor already stands where the user does.
        return offset == 0 || seek_below(s, offset, SEEK_CUR) != -1;
    case SEEK_SET: return offset != -1 && seek_below(s, offset, SEEK_SET) != -1;
    case SEEK_END: return seek_below(s, offset, SEEK_END) != -1;
    default: return true;
    }
}

int64_t tell(Stream &s) {
    int64_t position = is_usable(s) ? seek_below(s, 0, SEEK_CUR) : -1;
    if (position == -1) return position_error();
    if (s.flags & SF_WRITING) return position + bytes_in_file(s, s.base, s.pos);
    if (s.flags & SF_READING) return position - unread_bytes(s);
    return position;
}

int seek(Stream &s, const fpos_t *saved, int64_t offset, int origin) {
    if (!is_usable(s) || flush(s) != 0) return fail_with(EFPOS);
    if (saved) offset += saved->__position;
    if (!move_below(s, offset, origin)) return fail_with(EFPOS);
    discard_buffer(s); // an idle stream has one, too: a character that the input ended in
    if (saved) {
        const auto *state = reinterpret_cast<const mbstate_t *>(saved->__state);
        s.conv_state = *state;
    }
    s.flags &= ~static_cast<uint32_t>(SF_EOF | SF_READING | SF_WRITING);
    return 0;
}

int seek_file(FILE *file, int64_t offset, int origin) {
    return with_stream(file, -1, [=](Stream &s) { return seek(s, nullptr, offset, origin); });
}

int64_t tell_file(FILE *file) {
    return with_stream(file, int64_t(-1), [](Stream &s) { return tell(s); });
}

// A position that does not fit the result is an error of its own.
long narrow(int64_t position) {
    return position > LONG_MAX ? static_cast<long>(position_error()) : static_cast<long>(position);
}

} // namespace

int64_t seek_below(Stream &s, int64_t offset, int origin) {
    if (s.is_custom()) {
        auto &custom = static_cast<CustomStream &>(s);
        return custom.seek_fn(&custom, offset, origin);
    }
    return _lseek64(s.fd, offset, origin);
}

} // namespace vexrt

using namespace vexrt;

static_assert(sizeof(fpos_t) == 16);

extern "C" int fseek(FILE *file, long offset, int origin) {
    return seek_file(file, offset, origin);
}
extern "C" int _fseeko(FILE *file, off_t offset, int origin) {
    return seek_file(file, offset, origin);
}
extern "C" int _fseek64(FILE *file, long long offset, int origin) {
    return seek_file(file, offset, origin);
}

extern "C" long ftell(FILE *file) { return narrow(tell_file(file)); }
extern "C" off_t _ftello(FILE *file) { return narrow(tell_file(file)); }
extern "C" long long _ftell64(FILE *file) { return tell_file(file); }

extern "C" int fgetpos(FILE *file, fpos_t *position) {
    if (!position) return fail_with(EINVAL);
    return with_stream(file, -1, [=](Stream &s) {
        int64_t offset = tell(s);
        if (offset == -1) return -1;
        position->__position = offset;
        *reinterpret_cast<mbstate_t *>(position->__state) = s.conv_state;
        return 0;
    });
}

extern "C" int fsetpos(FILE *file, const fpos_t *position) {
    if (!position) return fail_with(EINVAL);
    return with_stream(file, -1, [=](Stream &s) { return seek(s, position, 0, SEEK_SET); });
}

extern "C" void rewind(FILE *file) {
    with_stream(file, -1, [](Stream &s) {
        seek(s, nullptr, 0, SEEK_SET);
        s.flags &= ~static_cast<uint32_t>(SF_ERR);
        return 0;
    });
}
