// Formatted output to streams and input from them, narrow and wide.
#pragma once

#include "core/constraint.h"
#include "format/format.h"
#include "format/list_form.h"
#include "format/scanner.h"
#include "stdio/wide.h"

namespace vexrt {

inline bool write_text(const char *text, size_t count, Stream &stream) {
    return write_all(text, count, stream);
}
inline bool write_text(const wchar_t *text, size_t count, Stream &stream) {
    return write_wide(text, count, stream);
}

// The engine gathers pieces, so that even an unbuffered stream is not written to for every one.
template <typename Char>
void *put_to_stream(void *state, const Char *text, size_t count) {
    return write_text(text, count, *static_cast<Stream *>(state)) ? state : nullptr;
}

// The stream stays locked for the whole call, so that no other thread's output comes in between.
template <typename Char>
int print(FILE *file, const Char *format, va_list list, bool secure) {
    if (!file || !format) return refuse_argument(secure);
    Stream &stream = stream_of(file);
    StreamLocked locked(stream);
    LentBuffer lent(stream);
    return format_text(put_to_stream<Char>, &stream, format, list, secure);
}

// `StreamInput` is the input over a stream.
template <typename StreamInput, typename Char>
int scan(FILE *file, const Char *format, va_list list, bool secure) {
    if (!file || !format) return refuse_argument(secure);
    Stream &stream = stream_of(file);
    StreamLocked locked(stream);
    StreamInput input(stream);
    return scan_from(input, format, list, secure);
}

} // namespace vexrt
