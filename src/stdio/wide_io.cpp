// Wide characters in and out of a stream's buffer of bytes.

#include "stdio/wide.h"

#include "core/errno.h"
#include "io/io.h"
#include "stdio/stream_table.h"

#include <string.h>
#include <wchar.h>

namespace vexrt {

namespace {

Descriptor *unicode_descriptor(const Stream &s) {
    Descriptor *descriptor = s.is_custom() ? nullptr : open_descriptor(s.fd);
    bool unicode = descriptor && descriptor->is_text() && descriptor->encoding != encoding_ansi;
    return unicode ? descriptor : nullptr;
}

wint_t failure(Stream &s) {
    s.flags |= SF_ERR;
    return WEOF;
}

// ---- in ----

constexpr unsigned longest_character = 8; // what the area for parked bytes holds

void park(Stream &s, const char *bytes, unsigned count) {
    s.unget_ptr = s.inline_buf - count;
    memcpy(s.unget_ptr, bytes, count);
}

// Whether the buffer cannot hold the two units of a pair, and is not the automatic one to come.
bool has_tiny_buffer(const Stream &s) {
    return s.end - s.base < 4 && (s.base != s.inline_buf || s.flags & (SF_LINEBUF | SF_NOBUF));
}

// More bytes of the input: one, or what a pair takes where no buffer can hold it.
bool read_more(Stream &s, char *bytes, unsigned &count) {
    bool readable = (s.flags & (SF_READ | SF_WRITING | SF_EOF)) == SF_READ;
    if (takes_units(s) && has_tiny_buffer(s) && readable) {
        int got = read_below(s, bytes + count, 4);
        s.flags |= SF_WIDE | (got > 0 ? SF_READING : got < 0 ? SF_ERR : SF_EOF);
        count += got > 0 ? static_cast<unsigned>(got) : 0;
        return got > 0;
    }
    if (wide_fill(s) < 1) return false;
    bytes[count++] = *s.pos++;
    return true;
}

// A character whose bytes do not lie together in the buffer: they are gathered, first those parked
// by an earlier call. On failure they stay parked, so that nothing is lost.
wint_t gather(Stream &s) {
    char bytes[longest_character + 4];
    auto count = static_cast<unsigned>(s.inline_buf - s.unget_ptr);
    memcpy(bytes, s.unget_ptr, count);
    s.unget_ptr = s.inline_buf;
    for (;;) {
        wchar_t wc;
        int used = count ? take_character(wc, bytes, count, s.conv_state) : incomplete_sequence;
        if (used > 0) {
            park(s, bytes + used, count - static_cast<unsigned>(used));
            return wc;
        }
        if (used == invalid_sequence || count >= longest_character || !read_more(s, bytes, count)) {
            if (count > longest_character) count = longest_character;
            park(s, bytes, count);
            if (!count) return WEOF; // the end of the input, or an error that is noted already
            if (used == incomplete_sequence) set_errno(EILSEQ);
            return failure(s);
        }
    }
}

// ---- out ----

// Past a buffer that cannot hold a pair.
bool write_directly(Stream &s, const char *bytes, unsigned count) {
    if ((s.flags & (SF_WRITE | SF_READING | SF_BYTE)) != SF_WRITE) return failure(s) != WEOF;
    s.flags |= SF_WRITING | SF_WIDE;
    Descriptor *descriptor = unicode_descriptor(s);
    if (descriptor && descriptor->encoding == encoding_utf8 &&
        ends_with_high_surrogate(bytes, bytes + count)) {
        wchar_t half;
        memcpy(&half, bytes + (count -= 2), sizeof half);
        s.conv_state.__value = half;
    }
    for (unsigned done = 0; done < count;) {
        int written = write_below(s, bytes + done, count - done);
        if (written < 1) return failure(s) != WEOF;
        done += static_cast<unsigned>(written);
    }
    return true;
}

// The encoded bytes of some characters, whole.
bool store(Stream &s, const char *bytes, unsigned count) {
    if (has_tiny_buffer(s)) return write_directly(s, bytes, count);
    const unsigned piece = takes_units(s) ? 2 : 1;
    while (count) {
        if (make_wide_room(s, piece) != 0) return false;
        auto room = static_cast<unsigned>(s.wide_put_limit - s.pos) / piece * piece;
        if (room == 0) return write_directly(s, bytes, count); // there was no memory for a buffer
        unsigned part = count < room ? count : room;
        memcpy(s.pos, bytes, part);
        s.pos += part;
        bytes += part;
        count -= part;
    }
    return true;
}

// A run of characters in their encoding.
struct Encoded {
    char bytes[512];
    unsigned count = 0;
    bool failed = false, line_ended = false;

    // Takes characters while another one surely fits, and not half of a pair; returns where it
    // stops.
    const wchar_t *take(const wchar_t *at, const wchar_t *end, mbstate_t &state) {
        constexpr unsigned reserve = 2 * multibyte_limit;
        for (; at < end; ++at) {
            if (count > sizeof bytes - multibyte_limit) break;
            if (count > sizeof bytes - reserve && !(count && is_high_surrogate(at[-1]))) break;
            int length = encode_character(bytes + count, *at, state);
            if (length < 0) {
                failed = true;
                break;
            }
            count += static_cast<unsigned>(length);
            line_ended |= *at == L'\n';
        }
        return at;
    }
};

} // namespace

void settle_units(Stream &s) {
    if (s.flags & (SF_READING | SF_WRITING)) return;
    if (unicode_descriptor(s))
        s.conv_state.__flags |= raw_two_bytes;
    else if (!s.is_custom())
        s.conv_state.__flags &= static_cast<unsigned short>(~raw_two_bytes);
}

wint_t get_wide(Stream &s) {
    if (has_wide_pushback(s)) return *s.wunget_ptr++;
    if (s.flags & SF_BYTE) return failure(s);
    settle_units(s);
    if (s.unget_ptr < s.inline_buf || (takes_units(s) && has_tiny_buffer(s))) return gather(s);
    if (s.pos >= s.wide_read_end && wide_fill(s) < 1) return WEOF;
    wchar_t wc;
    auto available = static_cast<unsigned>(s.wide_read_end - s.pos);
    int used = take_character(wc, s.pos, available, s.conv_state);
    if (used > 0) {
        s.pos += used;
        return wc;
    }
    if (used == invalid_sequence || available >= longest_character) return failure(s);
    park(s, s.pos, available);
    s.pos = s.wide_read_end;
    return gather(s);
}

wint_t unget_wide(wint_t wc, Stream &s) {
    if (wc == WEOF || s.wunget_ptr == s.wunget_area ||
        (s.flags & (SF_READ | SF_WRITING | SF_BYTE)) != SF_READ)
        return WEOF;
    s.flags = (s.flags & ~static_cast<uint32_t>(SF_EOF)) | SF_READING | SF_WIDE;
    *--s.wunget_ptr = static_cast<wchar_t>(wc);
    return wc;
}

bool write_wide(const wchar_t *text, size_t length, Stream &s) {
    settle_units(s);
    for (const wchar_t *at = text, *end = text + length; at < end;) {
        Encoded run;
        if (takes_units(s) && s.conv_state.__value) {
            wchar_t half = take_held_unit(s);
            memcpy(run.bytes, &half, sizeof half);
            run.count = sizeof half;
        }
        at = run.take(at, end, s.conv_state);
        if (!store(s, run.bytes, run.count)) return false;
        if (run.failed) return failure(s) != WEOF;
        if (s.flags & SF_LINEBUF && run.line_ended && flush(s) != 0) return false;
    }
    return !(s.flags & SF_NOBUF) || has_tiny_buffer(s) || flush(s) == 0;
}

} // namespace vexrt
