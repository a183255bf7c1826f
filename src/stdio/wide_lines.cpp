// Wide lines and strings.

#include "stdio/lines.h"
#include "stdio/stream_table.h"
#include "stdio/wide.h"

#include <wchar.h>

namespace vexrt {

LineRead read_until(Stream &s, wchar_t *to, size_t room, int delimiter) {
    for (size_t length = 0; length < room;) {
        wint_t wc = get_wide(s);
        if (wc == WEOF) return {length, false};
        to[length++] = static_cast<wchar_t>(wc);
        if (wc == static_cast<wint_t>(delimiter)) return {length, true};
    }
    return {room, false};
}

} // namespace vexrt

using namespace vexrt;

extern "C" wchar_t *fgetws(wchar_t *to, int size, FILE *file) {
    if (!to || size < 1) {
        set_errno(EINVAL);
        return nullptr;
    }
    return with_stream(file, static_cast<wchar_t *>(nullptr),
                       [=](Stream &s) { return get_line(s, to, static_cast<size_t>(size) - 1); });
}

extern "C" int fputws(const wchar_t *text, FILE *file) {
    if (!text) return fail_with(EINVAL);
    return with_stream(file, EOF, [=](Stream &s) {
        LentBuffer lent(s);
        return write_wide(text, wcslen(text), s) ? 0 : EOF;
    });
}

extern "C" ssize_t getwdelim(wchar_t **line, size_t *capacity, wint_t delimiter, FILE *file) {
    if (!line || !capacity) return fail_with(EINVAL);
    return with_stream(file, ssize_t(-1),
                       [=](Stream &s) { return get_delimited(s, *line, *capacity, delimiter); });
}

extern "C" ssize_t getwline(wchar_t **line, size_t *capacity, FILE *file) {
    return getwdelim(line, capacity, L'\n', file);
}
