#include "io/console.h"
#include "io/io.h"
#include "locale/locale_record.h"

#include <conio.h>
#include <string.h>
#include <wchar.h>

namespace vexrt {

namespace {

constexpr size_t recoded_limit = 4096; // bytes; longer text is written as it is

BOOL write_units(HANDLE console, const char *text, DWORD count, DWORD *done) {
    return WriteConsoleA(console, text, count, done, nullptr);
}
BOOL write_units(HANDLE console, const wchar_t *text, DWORD count, DWORD *done) {
    return WriteConsoleW(console, text, count, done, nullptr);
}

template <typename Char>
bool write_whole(HANDLE console, const Char *text, size_t count) {
    DWORD done = 0;
    return write_units(console, text, count, &done) && done == count;
}

void recode_for_console(char *text, size_t count) {
    recode_in_place(GetConsoleOutputCP(), thread_record().locale->code_page, text,
                    static_cast<int>(count));
}

bool write_recoded(HANDLE console, const char *text, size_t count) {
    if (thread_record().locale->code_page == 0 || count > recoded_limit)
        return write_whole(console, text, count);
    char copy[recoded_limit];
    memcpy(copy, text, count);
    recode_for_console(copy, count);
    return write_whole(console, copy, count);
}
bool write_recoded(HANDLE console, const wchar_t *text, size_t count) {
    return write_whole(console, text, count);
}

template <typename Char>
bool write_text(const Char *text, size_t count) {
    HANDLE console = or_fail_without(console_output());
    if (console == INVALID_HANDLE_VALUE) return false;
    bool written = write_recoded(console, text, count);
    if (!written) map_os_error(GetLastError());
    return written;
}

// One byte or unit; these functions set no errno.
template <typename Char>
bool write_one(Char unit) {
    HANDLE console = console_output();
    return console != INVALID_HANDLE_VALUE && write_whole(console, &unit, 1);
}

size_t length_of(const char *text) { return strlen(text); }
size_t length_of(const wchar_t *text) { return wcslen(text); }

template <typename Char>
int put_string(const Char *text) {
    if (!text) return fail_with(EINVAL);
    return under_console_lock([=] { return write_console_text(text, length_of(text)) ? 0 : -1; });
}

} // namespace

bool write_console_text(const char *text, size_t count) { return write_text(text, count); }
bool write_console_text(const wchar_t *text, size_t count) { return write_text(text, count); }

} // namespace vexrt

using namespace vexrt;

extern "C" {

int _putch(int c) {
    return under_console_lock([=] {
        char byte = static_cast<char>(c);
        recode_for_console(&byte, 1);
        return write_one(byte) ? static_cast<unsigned char>(byte) : -1;
    });
}

wint_t _putwch(wchar_t wc) {
    return under_console_lock([=]() -> wint_t { return write_one(wc) ? wc : WEOF; });
}

int _cputs(const char *s) { return put_string(s); }
int _cputws(const wchar_t *s) { return put_string(s); }

} // extern "C"
