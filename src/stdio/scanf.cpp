// The functions that read narrow text from a stream by a format.

#include "stdio/formatted.h"

using namespace vexrt;

namespace {

// A stream, whose buffer is the window. A byte that was pushed back is a window of its own.
class StreamInput : public Input<char> {
public:
    explicit StreamInput(Stream &stream) : Input<char>(next_window, push_back), stream_(stream) {
        set_window(stream.pos, stream.pos);
    }
    ~StreamInput() { give_back(); }
    StreamInput(const StreamInput &) = delete;
    StreamInput &operator=(const StreamInput &) = delete;

private:
    // Leaves the stream at the character that is to be read next.
    void give_back() {
        if (begin_ != &byte_)
            stream_.pos += at_ - begin_;
        else if (at_ == begin_)
            unget_byte(static_cast<unsigned char>(byte_), stream_);
    }

    static bool next_window(Input<char> &input) {
        auto &self = static_cast<StreamInput &>(input);
        Stream &stream = self.stream_;
        self.give_back();
        int c = get_byte(stream);
        if (c < 0) {
            self.set_window(stream.pos, stream.pos);
        } else if (stream.saved_read_end) {
            self.byte_ = static_cast<char>(c);
            self.set_window(&self.byte_, &self.byte_ + 1);
        } else {
            --stream.pos;
            self.set_window(stream.pos, stream.read_end);
        }
        return c >= 0;
    }

    static void push_back(Input<char> &input, char c) {
        auto &self = static_cast<StreamInput &>(input);
        self.give_back();
        unget_byte(static_cast<unsigned char>(c), self.stream_);
        self.set_window(self.stream_.pos, self.stream_.pos);
        --self.before_;
    }

    Stream &stream_;
    char byte_;
};

} // namespace

extern "C" {

int vfscanf(FILE *stream, const char *format, va_list list) {
    return scan<StreamInput>(stream, format, list, false);
}
int vfscanf_s(FILE *stream, const char *format, va_list list) {
    return scan<StreamInput>(stream, format, list, true);
}
int vscanf(const char *format, va_list list) {
    return scan<StreamInput>(stdin, format, list, false);
}
int vscanf_s(const char *format, va_list list) {
    return scan<StreamInput>(stdin, format, list, true);
}

int fscanf(FILE *stream, const char *format, ...) {
    VEXRT_WITH_ARGUMENTS(vfscanf(stream, format, arguments));
}
int fscanf_s(FILE *stream, const char *format, ...) {
    VEXRT_WITH_ARGUMENTS(vfscanf_s(stream, format, arguments));
}
int scanf(const char *format, ...) { VEXRT_WITH_ARGUMENTS(vscanf(format, arguments)); }
int scanf_s(const char *format, ...) { VEXRT_WITH_ARGUMENTS(vscanf_s(format, arguments)); }

} // extern "C"
