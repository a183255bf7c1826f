// The functions that format narrow text to a stream.

#include "core/constraint.h"
#include "core/errno.h"
#include "format/format.h"
#include "format/list_form.h"
#include "stdio/stream.h"

#include <string.h>

using namespace vexrt;

namespace {

// Where the pieces of one call go. A buffered stream takes them as they come; for an unbuffered one
// they are gathered, so that the call costs one write and not one for every piece.
class StreamSink {
public:
    explicit StreamSink(Stream &stream) : stream_(stream), gathers_(stream.flags & SF_NOBUF) {}

    static void *put(void *state, const char *text, size_t count) {
        return static_cast<StreamSink *>(state)->take(text, count) ? state : nullptr;
    }

    bool finish() { return gathered_ == 0 || write_gathered(); }

private:
    bool take(const char *text, size_t count) {
        if (!gathers_) return write_all(text, count, stream_);
        if (count > sizeof pieces_ - gathered_ && !write_gathered()) return false;
        if (count > sizeof pieces_) return write_all(text, count, stream_);
        memcpy(pieces_ + gathered_, text, count);
        gathered_ += count;
        return true;
    }

    bool write_gathered() {
        size_t count = gathered_;
        gathered_ = 0;
        return write_all(pieces_, count, stream_);
    }

    Stream &stream_;
    bool gathers_;
    size_t gathered_ = 0;
    char pieces_[512];
};

int refuse_argument(bool secure) {
    if (secure)
        report_constraint(EINVAL);
    else
        set_errno(EINVAL);
    return -1;
}

// The stream stays locked for the whole call, so that no other thread's output comes in between.
int print(FILE *file, const char *format, va_list list, bool secure) {
    if (!file || !format) return refuse_argument(secure);
    Stream &stream = stream_of(file);
    StreamLocked locked(stream);
    LentBuffer lent(stream);
    StreamSink sink(stream);
    int count = format_text(StreamSink::put, &sink, format, list, secure);
    return sink.finish() ? count : -1;
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
