// Lines and strings. Within the buffer a line is found and copied as a block; only its edges go
// byte by byte.

#include "stdio/lines.h"
#include "core/constraint.h"
#include "core/errno.h"
#include "stdio/stream_table.h"

#include <limits.h>
#include <string.h>

namespace vexrt {

LineRead read_until(Stream &s, char *to, size_t room, int delimiter) {
    size_t length = 0;
    while (length < room) {
        int c = get_byte(s);
        if (c == EOF) return {length, false};
        to[length++] = static_cast<char>(c);
        if (c == delimiter) return {length, true};
        size_t span = s.pos < s.read_end ? static_cast<size_t>(s.read_end - s.pos) : 0;
        if (span > room - length) span = room - length;
        if (!span) continue;
        const void *end = memchr(s.pos, delimiter, span);
        if (end) span = static_cast<size_t>(static_cast<const char *>(end) - s.pos) + 1;
        memcpy(to + length, s.pos, span);
        s.pos += span;
        length += span;
        if (end) return {length, true};
    }
    return {length, false};
}

namespace {

bool put_string(const char *text, Stream &s) {
    LentBuffer lent(s);
    return write_all(text, strlen(text), s);
}

// The rest of a line that did not fit is read and dropped.
void discard_line(Stream &s) {
    for (int c; (c = get_byte(s)) != EOF && c != '\n';) {
    }
}

// Takes the newline off a line that has one. Null when nothing could be read.
char *get_input_line(char *to, size_t room, LineRead &line) {
    uint32_t before = standard_input.flags;
    line = read_until(standard_input, to, room, '\n');
    if (room && failed(line, standard_input, before)) return nullptr;
    to[line.length - line.delimited] = '\0';
    return to;
}

char *gets_violation(char *to, bool usable) {
    if (usable) to[0] = '\0';
    discard_line(standard_input);
    report_constraint(EINVAL);
    return nullptr;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" char *fgets(char *to, int size, FILE *file) {
    if (!to || size < 1) {
        set_errno(EINVAL);
        return nullptr;
    }
    return with_stream(file, static_cast<char *>(nullptr),
                       [=](Stream &s) { return get_line(s, to, static_cast<size_t>(size) - 1); });
}

extern "C" char *gets(char *to) {
    LineRead line;
    StreamLocked guard(standard_input);
    return get_input_line(to, INT_MAX, line);
}

// The newline must come within the first size - 1 bytes, or the input must end there.
extern "C" char *gets_s(char *to, rsize_t size) {
    StreamLocked guard(standard_input);
    bool usable = to && size > 0 && size <= RSIZE_MAX;
    if (!usable) return gets_violation(to, usable);
    LineRead line;
    size_t room = size - 1;
    if (!get_input_line(to, room, line)) {
        to[0] = '\0';
        return nullptr;
    }
    return line.delimited || line.length < room ? to : gets_violation(to, usable);
}

extern "C" int fputs(const char *text, FILE *file) {
    if (!text) return fail_with(EINVAL);
    return with_stream(file, EOF, [=](Stream &s) { return put_string(text, s) ? 0 : EOF; });
}

extern "C" int puts(const char *text) {
    if (!text) return fail_with(EINVAL);
    StreamLocked guard(standard_output);
    LentBuffer lent(standard_output);
    bool done =
        write_all(text, strlen(text), standard_output) && put_byte('\n', standard_output) != EOF;
    return done ? 0 : EOF;
}

extern "C" ssize_t getdelim(char **line, size_t *capacity, int delimiter, FILE *file) {
    if (!line || !capacity) return fail_with(EINVAL);
    return with_stream(file, ssize_t(-1),
                       [=](Stream &s) { return get_delimited(s, *line, *capacity, delimiter); });
}

extern "C" ssize_t getline(char **line, size_t *capacity, FILE *file) {
    return getdelim(line, capacity, '\n', file);
}
