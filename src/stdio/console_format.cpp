// Formatted text on the console. It stands here, not with the rest of the console, because it needs
// both the console and the formatting engines.

#include "format/format.h"
#include "format/list_form.h"
#include "format/scanner.h"
#include "io/console.h"

#include <conio.h>

using namespace vexrt;

namespace {

template <typename Char>
void *put_to_console(void *state, const Char *text, size_t count) {
    return write_console_text(text, count) ? state : nullptr;
}

// The console is asked for first: a format that comes to nothing fails without one, too.
template <typename Char>
int print_on_console(const Char *format, va_list arguments) {
    return under_console_lock([=] {
        HANDLE console = or_fail_without(console_output());
        if (console == INVALID_HANDLE_VALUE) return -1;
        return format_text(put_to_console<Char>, console, format, arguments, false);
    });
}

// The keyboard with echo, one character after the other. The one that is not used in the end is the
// next key that is read.
template <typename Char>
class KeyInput : public Input<Char> {
public:
    KeyInput() : Input<Char>(next_window, push_back) { this->set_window(&key_, &key_); }
    ~KeyInput() { give_back(); }
    KeyInput(const KeyInput &) = delete;
    KeyInput &operator=(const KeyInput &) = delete;

private:
    void give_back() {
        if (this->at_ != this->end_) return_key<Char>(static_cast<int>(code_of(key_)));
    }

    static bool next_window(Input<Char> &input) {
        auto &self = static_cast<KeyInput &>(input);
        int key = read_key_with_echo<Char>();
        self.key_ = static_cast<Char>(key);
        self.set_window(&self.key_, &self.key_ + (key >= 0));
        return key >= 0;
    }

    static void push_back(Input<Char> &input, Char key) {
        auto &self = static_cast<KeyInput &>(input);
        self.give_back();
        return_key<Char>(static_cast<int>(code_of(key)));
        self.set_window(&self.key_, &self.key_);
        --self.before_;
    }

    Char key_;
};

template <typename Char>
int scan_keys(const Char *format, va_list arguments) {
    if (!format) return fail_with(EINVAL);
    if (or_fail_without(console_input()) == INVALID_HANDLE_VALUE) return -1;
    KeyInput<Char> input;
    return scan_from(input, format, arguments, false);
}

} // namespace

extern "C" {

int _cprintf(const char *format, ...) { VEXRT_WITH_ARGUMENTS(print_on_console(format, arguments)); }
int _cwprintf(const wchar_t *format, ...) {
    VEXRT_WITH_ARGUMENTS(print_on_console(format, arguments));
}
int _cscanf(const char *format, ...) { VEXRT_WITH_ARGUMENTS(scan_keys(format, arguments)); }
int _cwscanf(const wchar_t *format, ...) { VEXRT_WITH_ARGUMENTS(scan_keys(format, arguments)); }

} // extern "C"
