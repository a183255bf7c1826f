// The functions that format narrow text to a stream.

#include "core/constraint.h"
#include "core/errno.h"
#include "format/format.h"
#include "format/list_form.h"
#include "stdio/stream.h"

using namespace vexrt;

namespace {

// The engine gathers pieces, so that even an unbuffered stream is not written to for every one.
void *put_to_stream(void *state, const char *text, size_t count) {
    return write_all(text, count, *static_cast<Stream *>(state)) ? state : nullptr;
}

// The stream stays locked for the whole call, so that no other thread's output comes in between.
int print(FILE *file, const char *format, va_list list, bool secure) {
    if (!file || !format) return refuse_argument(secure);
    Stream &stream = stream_of(file);
    StreamLocked locked(stream);
    LentBuffer lent(stream);
    return format_text(put_to_stream, &stream, format, list, secure);
}

} // namespace

extern "C" {

int vfprintf(FILE *stream, const char *format, va_list list) {
    return print(stream, format, list, false);
}

int vfprintf_s(FILE *stream, const char *format, va_list list) {
    return print(stream, format, list, true);
}

int vprintf(const char *format, va_list list) { return print(stdout, format, list, false); }
int vprintf_s(const char *format, va_list list) { return print(stdout, format, list, true); }

int fprintf(FILE *stream, const char *format, ...) {
    VEXRT_WITH_ARGUMENTS(vfprintf(stream, format, arguments));
}

int fprintf_s(FILE *stream, const char *format, ...) {
    VEXRT_WITH_ARGUMENTS(vfprintf_s(stream, format, arguments));
}

int printf(const char *format, ...) { VEXRT_WITH_ARGUMENTS(vprintf(format, arguments)); }
int printf_s(const char *format, ...) { VEXRT_WITH_ARGUMENTS(vprintf_s(format, arguments)); }

} // extern "C"
