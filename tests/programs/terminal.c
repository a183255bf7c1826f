/* Uses every part of the console, one after the other, for a test that types and looks at the screen. */
#include <conio.h>
#include <string.h>
#include <time.h>

static void show_keys(void)
{
    _cputs("keys:");
    for (int key = 0; key != 'q';) {
        static const struct timespec moment = {0, 10000000};
        while (!_kbhit()) _nanosleep(&moment, NULL);
        key = _getch();
        _cprintf(" %02X", key);
        if (key == 0 || key == 0xE0) _cprintf("+%02X", _getch());
    }
    _cputs(" end\r\n");
}

static void read_texts(void)
{
    char narrow[100] = {20};
    wchar_t wide[100] = {20};
    int x = 0, y = 0;
    _cputs("line: ");
    _cgets(narrow);
    _cprintf("%d characters: %s\r\n", narrow[1], narrow + 2);
    _cputws(L"wide line: ");
    _cgetws(wide);
    _cwprintf(L"%d characters: %ls\r\n", wide[1], wide + 2);
    _cputs("numbers: ");
    int count = _cscanf("%d,%d", &x, &y);
    _cprintf("\r\n%d: %d %d\r\n", count, x, y);
    _cprintf("after them %02X, echoed ", _getch());
    _cprintf(" %02X\r\n", _getche());
}

static void draw(void)
{
    int x = _wherex(), y = _wherey();
    _cprintf("cursor at %d %d", x, y);
    _gotoxy(3, 1);
    _clreol();
    _textcolor(4);
    _cputs("red ");
    _textbackground(2);
    _cputs("on green");
    _textbackground(0);
    _textcolor(7);
    _gotoxy(1, y + 1);
    _putwch(0x3B1);
    _putch('!');
}

int main(void)
{
    _clrscr();
    _cputs("first line\r\n");
    show_keys();
    read_texts();
    draw();
    _getch();
    _clrscr();
    _cputs("done");
    _getch();
    return 3;
}
