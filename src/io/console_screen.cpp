#include "io/console.h"

#include <conio.h>

namespace vexrt {

namespace {

// Calls `work(console, state)` with the console lock held; false ends in errno by the last error.
template <typename Work>
void on_screen(Work work) {
    under_console_lock([&] {
        HANDLE console = or_fail_without(console_output());
        if (console == INVALID_HANDLE_VALUE) return false;
        bool done = work(console);
        if (!done) map_os_error(GetLastError());
        return done;
    });
}

using ScreenState = CONSOLE_SCREEN_BUFFER_INFO;

bool clear_cells(HANDLE console, const ScreenState &state, DWORD count, COORD from) {
    DWORD done;
    return FillConsoleOutputCharacterA(console, ' ', count, from, &done) &&
           FillConsoleOutputAttribute(console, state.wAttributes, count, from, &done);
}

bool clear_all_cells(HANDLE console) {
    ScreenState state;
    if (!GetConsoleScreenBufferInfo(console, &state)) return false;
    int cells = state.dwSize.X * state.dwSize.Y;
    return clear_cells(console, state, static_cast<DWORD>(cells), COORD{0, 0});
}

// Keeps the bits of `mask` in the attributes and sets the others.
void change_attributes(int mask, int bits) {
    on_screen([=](HANDLE console) {
        ScreenState state;
        return GetConsoleScreenBufferInfo(console, &state) &&
               SetConsoleTextAttribute(console,
                                       static_cast<WORD>((state.wAttributes & mask) | bits));
    });
}

// A coordinate of the cursor counted from 1, or -1.
int cursor_position(short COORD::*axis) {
    int position = -1;
    on_screen([&](HANDLE console) {
        ScreenState state;
        if (!GetConsoleScreenBufferInfo(console, &state)) return false;
        position = state.dwCursorPosition.*axis + 1;
        return true;
    });
    return position;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

// The cursor goes home even if the cells could not be cleared.
void _clrscr() {
    on_screen([](HANDLE console) {
        if (!clear_all_cells(console)) map_os_error(GetLastError());
        return bool(SetConsoleCursorPosition(console, COORD{0, 0}));
    });
}

void _clreol() {
    on_screen([](HANDLE console) {
        ScreenState state;
        if (!GetConsoleScreenBufferInfo(console, &state)) return false;
        int cells = state.dwSize.X - state.dwCursorPosition.X;
        return clear_cells(console, state, static_cast<DWORD>(cells), state.dwCursorPosition);
    });
}

void _gotoxy(int x, int y) {
    on_screen([=](HANDLE console) {
        COORD position = {static_cast<short>(x - 1), static_cast<short>(y - 1)};
        if (!SetConsoleCursorPosition(console, position)) set_errno(EIO);
        return true;
    });
}

void _textcolor(int c) { change_attributes(0xF0, c & 0x0F); }
void _textbackground(int c) { change_attributes(0x0F, (c << 4) & 0xF0); }

int _wherex() { return cursor_position(&COORD::X); }
int _wherey() { return cursor_position(&COORD::Y); }

} // extern "C"
