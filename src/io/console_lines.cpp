#include "io/console.h"
#include "io/console_mode.h"
#include "io/io.h"
#include "locale/locale_record.h"

#include <conio.h>

namespace vexrt {

namespace {

BOOL read_units(HANDLE console, char *text, DWORD count, DWORD *done) {
    return ReadConsoleA(console, text, count, done, nullptr);
}
BOOL read_units(HANDLE console, wchar_t *text, DWORD count, DWORD *done) {
    return ReadConsoleW(console, text, count, done, nullptr);
}

void recode_from_console(char *text, DWORD length) {
    recode_in_place(thread_record().locale->code_page, GetConsoleCP(), text,
                    static_cast<int>(length));
}
void recode_from_console(wchar_t *, DWORD) {}

// The length of what was read without its line end. When the capacity leaves no room for the LF,
// the console keeps it for the next read, which is then an LF alone: an empty line.
template <typename Char>
DWORD trimmed_length(const Char *text, DWORD count, DWORD capacity) {
    if (count >= 2 && text[count - 2] == '\r') return count - 2;
    if (count >= 1 && count == capacity && text[count - 1] == '\r') return count - 1;
    return count == 1 && text[0] == '\n' ? 0 : count;
}

template <typename Char>
DWORD capacity_of(const Char *buffer) {
    return static_cast<DWORD>(*buffer);
}
template <>
DWORD capacity_of(const char *buffer) {
    return static_cast<unsigned char>(*buffer);
}

template <typename Char>
Char *read_line(Char *buffer) {
    if (!buffer) return set_errno(EINVAL), nullptr;
    buffer[1] = 0;
    HANDLE console = or_fail_without(console_input());
    if (console == INVALID_HANDLE_VALUE) return nullptr;
    ConsoleMode lines(console, ENABLE_PROCESSED_INPUT | ENABLE_LINE_INPUT | ENABLE_ECHO_INPUT);
    Char *text = buffer + 2;
    DWORD capacity = capacity_of(buffer), count = 0;
    bool failed = !read_units(console, text, capacity, &count);
    if (failed) map_os_error(GetLastError());
    DWORD length = failed ? 0 : trimmed_length(text, count, capacity);
    text[length] = 0;
    buffer[1] = static_cast<Char>(length);
    recode_from_console(text, length);
    return failed ? nullptr : text;
}

} // namespace

} // namespace vexrt

extern "C" {

char *_cgets(char *buf) { return vexrt::read_line(buf); }
wchar_t *_cgetws(wchar_t *buf) { return vexrt::read_line(buf); }

} // extern "C"
