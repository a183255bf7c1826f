// The keyboard, byte by byte or UTF-16 unit by unit.
//
// A key with an extended code gives two bytes; the second is pending until the next call, like a
// byte that was pushed back. None of this takes a lock: a program that reads the keyboard in
// several threads has to say itself who gets which key.

#include "heap/heap.h"
#include "io/console.h"
#include "io/console_keys.h"
#include "io/console_mode.h"
#include "io/io.h"
#include "locale/locale_record.h"

#include <conio.h>
#include <wchar.h>

namespace vexrt {

namespace {

constexpr int none = -1;

// The keys that are to be read before any new one, the next of them last: the second byte of an
// extended key, a key that was pushed back, or what formatted input read too far, which may be an
// incomplete multibyte character.
struct PendingKeys {
    static constexpr unsigned capacity = 16; // formatted input gives back nine at most
    int keys[capacity];
    unsigned count;

    void add(int key) {
        if (count < capacity) keys[count++] = key;
    }
    int take() { return count ? keys[--count] : none; }
};

template <typename Char>
PendingKeys pending; // bytes for the narrow functions, units for the wide ones

template <typename Char>
struct Keyboard;

template <>
struct Keyboard<char> {
    static BOOL read(HANDLE console, INPUT_RECORD *record, DWORD *done) {
        return ReadConsoleInputA(console, record, 1, done);
    }
    static int character(const KEY_EVENT_RECORD &event) {
        char byte = event.AsciiChar;
        recode_in_place(thread_record().locale->code_page, GetConsoleCP(), &byte, 1);
        return static_cast<unsigned char>(byte);
    }
    static bool has_character(const KEY_EVENT_RECORD &event) { return event.AsciiChar; }
    static bool echo(int key) { return _putch(key) >= 0; }
};

template <>
struct Keyboard<wchar_t> {
    static BOOL read(HANDLE console, INPUT_RECORD *record, DWORD *done) {
        return ReadConsoleInputW(console, record, 1, done);
    }
    static int character(const KEY_EVENT_RECORD &event) { return event.UnicodeChar; }
    static bool has_character(const KEY_EVENT_RECORD &event) { return event.UnicodeChar; }
    static bool echo(int key) { return _putwch(static_cast<wchar_t>(key)) != WEOF; }
};

bool is_key_down(const INPUT_RECORD &record) {
    return record.EventType == KEY_EVENT && record.KeyEvent.bKeyDown;
}

// The first byte of an event, `none` when it has none.
template <typename Char>
int key_of(const INPUT_RECORD &record) {
    if (!is_key_down(record)) return none;
    if (Keyboard<Char>::has_character(record.KeyEvent))
        return Keyboard<Char>::character(record.KeyEvent);
    KeyCode code = find_key_code(record.KeyEvent);
    if (!code.exists) return none;
    pending<Char>.add(code.second);
    return code.first;
}

template <typename Char>
int wait_for_key() {
    HANDLE console = console_input();
    if (console == INVALID_HANDLE_VALUE) return none;
    ConsoleMode raw(console, 0);
    INPUT_RECORD record;
    for (DWORD done = 0; Keyboard<Char>::read(console, &record, &done) && done; done = 0)
        if (int key = key_of<Char>(record); key != none) return key;
    return none;
}

template <typename Char>
int read_key() {
    int key = pending<Char>.take();
    return key != none ? key : wait_for_key<Char>();
}

template <typename Char>
bool push_back(int key) {
    if (pending<Char>.count) return false;
    pending<Char>.add(key);
    return true;
}

bool yields_byte(const INPUT_RECORD &record) {
    return is_key_down(record) && (Keyboard<char>::has_character(record.KeyEvent) ||
                                   find_key_code(record.KeyEvent).exists);
}

bool any_yields_byte(HANDLE console, INPUT_RECORD *records, DWORD room) {
    DWORD count = 0;
    if (!PeekConsoleInputA(console, records, room, &count)) return false;
    for (DWORD i = 0; i < count; ++i)
        if (yields_byte(records[i])) return true;
    return false;
}

// A program that does not read for a long time may have any number of events waiting; more than
// the stack should hold are looked at in a heap block, or without memory the first ones alone.
bool any_waiting_yields_byte(HANDLE console, DWORD count) {
    INPUT_RECORD few[64];
    constexpr DWORD few_count = sizeof few / sizeof *few;
    if (count <= few_count) return any_yields_byte(console, few, count);
    INPUT_RECORD *many = nullptr;
    if (count <= SIZE_MAX / sizeof *many)
        many = static_cast<INPUT_RECORD *>(heap_allocate(count * sizeof *many));
    bool result = any_yields_byte(console, many ? many : few, many ? count : few_count);
    heap_release(many);
    return result;
}

} // namespace

// What has been read before is not echoed again.
template <typename Char>
int read_key_with_echo() {
    int key = pending<Char>.take();
    if (key != none) return key;
    key = wait_for_key<Char>();
    return key != none && Keyboard<Char>::echo(key) ? key : none;
}
template int read_key_with_echo<char>();
template int read_key_with_echo<wchar_t>();

template <typename Char>
void return_key(int key) {
    pending<Char>.add(key);
}
template void return_key<char>(int key);
template void return_key<wchar_t>(int key);

} // namespace vexrt

using namespace vexrt;

extern "C" {

int _getch() { return read_key<char>(); }
int _getche() { return read_key_with_echo<char>(); }

int _ungetch(int c) {
    int key = c & 0xFF;
    return c != -1 && push_back<char>(key) ? key : -1;
}

wint_t _getwch() { return static_cast<wint_t>(read_key<wchar_t>()); }
wint_t _getwche() { return static_cast<wint_t>(read_key_with_echo<wchar_t>()); }
wint_t _ungetwch(wint_t wc) { return wc != WEOF && push_back<wchar_t>(wc) ? wc : WEOF; }

// Where nothing is waiting a look is taken all the same: some systems do not begin to listen to the
// keyboard before somebody looks.
int _kbhit() {
    HANDLE console = console_input();
    DWORD count = 0;
    return console != INVALID_HANDLE_VALUE && GetNumberOfConsoleInputEvents(console, &count) &&
           any_waiting_yields_byte(console, count ? count : 1);
}

} // extern "C"
