// The functions that format wide text to a stream.

#include "core/constraint.h"
#include "format/format.h"
#include "format/list_form.h"
#include "stdio/wide.h"

#include <wchar.h>

using namespace vexrt;

namespace {

void *put_to_stream(void *state, const wchar_t *text, size_t count) {
    return write_wide(text, count, *static_cast<Stream *>(state)) ? state : nullptr;
}

// The stream stays locked for the whole call, so that no other thread's output comes in between.
int print(FILE *file, const wchar_t *format, va_list list, bool secure) {
    if (!file || !format) return refuse_argument(secure);
    Stream &stream = stream_of(file);
    StreamLocked locked(stream);
    LentBuffer lent(stream);
    return format_text(put_to_stream, &stream, format, list, secure);
}

} // namespace

extern "C" {

int vfwprintf(FILE *stream, const wchar_t *format, va_list list) {
    return print(stream, format, list, false);
}
int vfwprintf_s(FILE *stream, const wchar_t *format, va_list list) {
    return print(stream, format, list, true);
}
int vwprintf(const wchar_t *format, va_list list) { return print(stdout, format, list, false); }
int vwprintf_s(const wchar_t *format, va_list list) { return print(stdout, format, list, true); }

int fwprintf(FILE *stream, const wchar_t *format, ...) {
    VEXRT_WITH_ARGUMENTS(vfwprintf(stream, format, arguments));
}
int fwprintf_s(FILE *stream, const wchar_t *format, ...) {
    VEXRT_WITH_ARGUMENTS(vfwprintf_s(stream, format, arguments));
}
int wprintf(const wchar_t *format, ...) { VEXRT_WITH_ARGUMENTS(vwprintf(format, arguments)); }
int wprintf_s(const wchar_t *format, ...) { VEXRT_WITH_ARGUMENTS(vwprintf_s(format, arguments)); }

} // extern "C"
