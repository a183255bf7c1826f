// Single bytes: get, put, push back.

#include "stdio/stream_table.h"

namespace vexrt {

int get_byte_slow(Stream &s) {
    if (has_pushback(s) && (s.flags & SF_BYTE)) return static_cast<unsigned char>(*s.unget_ptr++);
    if (s.saved_read_end) {
        s.read_end = s.saved_read_end;
        s.saved_read_end = nullptr;
    }
    if (s.pos >= s.read_end && fill(s) < 1) return EOF;
    return static_cast<unsigned char>(*s.pos++);
}

int put_byte_slow(int c, Stream &s) {
    if (s.pos >= s.put_limit && make_room(s) != 0) return EOF;
    *s.pos++ = static_cast<char>(c);
    bool complete =
        (s.flags & SF_NOBUF) || ((s.flags & SF_LINEBUF) && static_cast<char>(c) == '\n');
    if (complete && flush(s) != 0) return EOF;
    return static_cast<unsigned char>(c);
}

// The result is the argument itself, though only its low byte is kept.
int unget_byte(int c, Stream &s) {
    if (c == EOF || s.unget_ptr == s.unget_area ||
        (s.flags & (SF_READ | SF_WRITING | SF_WIDE)) != SF_READ)
        return EOF;
    s.flags = (s.flags & ~static_cast<uint32_t>(SF_EOF)) | SF_READING | SF_BYTE;
    if (!s.saved_read_end) {
        s.saved_read_end = s.read_end;
        s.read_end = s.base;
    }
    *--s.unget_ptr = static_cast<char>(c);
    return c;
}

namespace {

[[gnu::noinline]] int get_locked(FILE *file) {
    return with_stream(file, EOF, [](Stream &stream) { return get_byte(stream); });
}

[[gnu::noinline]] int put_locked(int c, FILE *file) {
    return with_stream(file, EOF, [=](Stream &stream) { return put_byte(c, stream); });
}

// While the process has one thread, a byte that only moves within the buffer needs no lock: nobody
// can come in between.
[[gnu::always_inline]] inline int get(FILE *file) {
    if (__builtin_expect(file && begin_plain_section(), true)) {
        Stream &s = stream_of(file);
        if (__builtin_expect(s.pos < s.read_end, true)) {
            int c = static_cast<unsigned char>(*s.pos++);
            end_plain_section();
            return c;
        }
        end_plain_section();
    }
    return get_locked(file);
}

[[gnu::always_inline]] inline int put(int c, FILE *file) {
    if (__builtin_expect(file && begin_plain_section(), true)) {
        Stream &s = stream_of(file);
        if (__builtin_expect(s.has_plain_room(), true)) {
            *s.pos++ = static_cast<char>(c);
            end_plain_section();
            return static_cast<unsigned char>(c);
        }
        end_plain_section();
    }
    return put_locked(c, file);
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" int fgetc(FILE *file) { return get(file); }
extern "C" int getc(FILE *file) { return get(file); }
extern "C" int getchar() { return get(stdin); }
extern "C" int fputc(int c, FILE *file) { return put(c, file); }
extern "C" int putc(int c, FILE *file) { return put(c, file); }
extern "C" int putchar(int c) { return put(c, stdout); }

extern "C" int ungetc(int c, FILE *file) {
    return with_stream(file, EOF, [=](Stream &stream) { return unget_byte(c, stream); });
}
