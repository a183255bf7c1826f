// The functions that read wide text from a stream by a format.

#include "stdio/formatted.h"

#include <wchar.h>

using namespace vexrt;

namespace {

// A stream, one decoded character after the other.
class WideStreamInput : public Input<wchar_t> {
public:
    explicit WideStreamInput(Stream &stream)
        : Input<wchar_t>(next_window, push_back), stream_(stream) {
        set_window(&character_, &character_);
    }
    ~WideStreamInput() { give_back(); }
    WideStreamInput(const WideStreamInput &) = delete;
    WideStreamInput &operator=(const WideStreamInput &) = delete;

private:
    // Leaves the stream at the character that is to be read next.
    void give_back() {
        if (at_ != end_) unget_wide(character_, stream_);
    }

    static bool next_window(Input<wchar_t> &input) {
        auto &self = static_cast<WideStreamInput &>(input);
        wint_t wc = get_wide(self.stream_);
        self.character_ = static_cast<wchar_t>(wc);
        self.set_window(&self.character_, &self.character_ + (wc != WEOF));
        return wc != WEOF;
    }

    static void push_back(Input<wchar_t> &input, wchar_t c) {
        auto &self = static_cast<WideStreamInput &>(input);
        self.give_back();
        unget_wide(c, self.stream_);
        self.set_window(&self.character_, &self.character_);
        --self.before_;
    }

    Stream &stream_;
    wchar_t character_;
};

} // namespace

extern "C" {

int vfwscanf(FILE *stream, const wchar_t *format, va_list list) {
    return scan<WideStreamInput>(stream, format, list, false);
}
int vfwscanf_s(FILE *stream, const wchar_t *format, va_list list) {
    return scan<WideStreamInput>(stream, format, list, true);
}
int vwscanf(const wchar_t *format, va_list list) {
    return scan<WideStreamInput>(stdin, format, list, false);
}
int vwscanf_s(const wchar_t *format, va_list list) {
    return scan<WideStreamInput>(stdin, format, list, true);
}

int fwscanf(FILE *stream, const wchar_t *format, ...) {
    VEXRT_WITH_ARGUMENTS(vfwscanf(stream, format, arguments));
}
int fwscanf_s(FILE *stream, const wchar_t *format, ...) {
    VEXRT_WITH_ARGUMENTS(vfwscanf_s(stream, format, arguments));
}
int wscanf(const wchar_t *format, ...) { VEXRT_WITH_ARGUMENTS(vwscanf(format, arguments)); }
int wscanf_s(const wchar_t *format, ...) { VEXRT_WITH_ARGUMENTS(vwscanf_s(format, arguments)); }

} // extern "C"
