#include "format/format.h"

#include "format/formatter.h"

namespace vexrt {

namespace {

// Gathers pieces, so that a sink is not called for every one of them.
template <typename Char>
class SinkOutput : public Output<Char> {
public:
    SinkOutput(OutputSink<Char> sink, void *state)
        : Output<Char>(window_, window_size, send), sink_(sink), state_(state) {}

private:
    static constexpr size_t window_size = 512;

    static bool send(Output<Char> &output, const Char *text, size_t count) {
        auto &self = static_cast<SinkOutput &>(output);
        if (!self.state_) return false; // a sink that has failed is not called again
        if (self.used() && !self.deliver(self.window_, self.used())) return false;
        self.pos_ = self.begin_;
        if (count <= window_size) return self.put(text, count);
        return self.deliver(text, count);
    }

    bool deliver(const Char *text, size_t count) {
        state_ = sink_(state_, text, count);
        this->before_ += count;
        return state_ != nullptr;
    }

    OutputSink<Char> sink_;
    void *state_;
    Char window_[window_size];
};

// A format that fails half-way has delivered what came before.
template <typename Char>
int format_to_sink(OutputSink<Char> sink, void *state, const Char *format, va_list arguments,
                   bool secure) {
    SinkOutput<Char> output(sink, state);
    int count = format_to(output, format, arguments, secure);
    return output.settle() ? count : -1;
}

} // namespace

int format_text(OutputSink<char> sink, void *state, const char *format, va_list arguments,
                bool secure) {
    return format_to_sink(sink, state, format, arguments, secure);
}

int format_text(OutputSink<wchar_t> sink, void *state, const wchar_t *format, va_list arguments,
                bool secure) {
    return format_to_sink(sink, state, format, arguments, secure);
}

} // namespace vexrt
