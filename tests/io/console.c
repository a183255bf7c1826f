/* The console, with the system's console functions scripted: keys, lines, text and the screen. */
#include "check.h"
#include "script.h"

#include <conio.h>
#include <locale.h>
#include <stdlib.h>
#include <threads.h>
#include <wchar.h>

typedef unsigned long DWORD;
typedef unsigned short WORD;

__declspec(dllimport) void __stdcall SetLastError(DWORD code);

#define IN ((void *)0x1110)
#define OUT ((void *)0x2220)
enum { SHIFTED = 0x10, RIGHT_ALT = 1, LEFT_ALT = 2, RIGHT_CTRL = 4, LEFT_CTRL = 8, NUM_LOCK = 0x20, ENHANCED = 0x100 };

static int opened;
static void *__stdcall open_console(const wchar_t *name, DWORD access, DWORD share, void *security,
                                    DWORD disposition, DWORD attributes, void *model)
{
    ++opened;
    CHECK(access == 0xC0000000 && share == 3 && !security && disposition == 3 && attributes == 0);
    if (!wcscmp(name, L"CONIN$")) return IN;
    CHECK_WSTR(name, L"CONOUT$");
    return OUT;
}

/* ---- The keyboard ---- */

typedef struct {
    WORD type;
    int down;
    WORD repeat, key, scan;
    wchar_t character;
    DWORD state;
} event;

static event events[200];
static int event_count, event_at, mode = 0x1F7, mode_while_reading;

static int __stdcall get_mode(void *handle, DWORD *to) { return *to = mode, handle == IN; }
static int __stdcall set_mode(void *handle, DWORD to)
{
    CHECK(handle == IN);
    mode = (int)to;
    return 1;
}

static int __stdcall count_events(void *handle, DWORD *count) { return *count = event_count - event_at, 1; }

static int __stdcall read_events(void *handle, event *to, DWORD count, DWORD *done)
{
    mode_while_reading = mode;
    CHECK(handle == IN && count == 1);
    *done = event_at < event_count;
    if (*done) *to = events[event_at++];
    return *done;
}

static DWORD peeked;
static int __stdcall peek_events(void *handle, event *to, DWORD count, DWORD *done)
{
    peeked = count;
    for (*done = 0; *done < count && event_at + (int)*done < event_count; ++*done)
        to[*done] = events[event_at + *done];
    return 1;
}

static void forget_events(void) { event_count = event_at = 0; }
static void add_event(int type, int down, int scan, int state, int character)
{
    event e = {(WORD)type, down, 1, 0, (WORD)scan, (wchar_t)character, (DWORD)state};
    events[event_count++] = e;
}
static void press(int scan, int state, int character)
{
    add_event(1, 1, scan, state, character);
    add_event(1, 0, scan, state, character);
}

/* ---- The screen ---- */

static char written[8192];
static wchar_t wide_written[8192];
static DWORD written_count, calls_of_write;
static int write_result = 1, short_by;

static int __stdcall write_bytes(void *handle, const char *text, DWORD count, DWORD *done, void *reserved)
{
    ++calls_of_write;
    *done = 0;
    if (!write_result || handle != OUT) return SetLastError(5), 0;
    *done = count - (DWORD)short_by;
    memcpy(written + written_count, text, *done);
    written[written_count += *done] = 0;
    return 1;
}
static int __stdcall write_units(void *handle, const wchar_t *text, DWORD count, DWORD *done, void *reserved)
{
    *done = 0;
    if (!write_result || handle != OUT) return SetLastError(5), 0;
    wmemcpy(wide_written + written_count, text, *done = count);
    wide_written[written_count += *done] = 0;
    return 1;
}
static void forget_written(void) { written_count = 0, written[0] = 0, wide_written[0] = 0; }

enum { WIDTH = 40, HEIGHT = 10 };
static char cells[WIDTH * HEIGHT];
static WORD attributes[WIDTH * HEIGHT];
static struct {
    short width, height, x, y;
    WORD attribute;
    short window[4], maximum[2];
} screen = {WIDTH, HEIGHT, 0, 0, 0x17, {0}, {0}};

static int __stdcall get_screen(void *handle, void *to)
{
    if (script_fail_now()) return SetLastError(8), 0;
    memcpy(to, &screen, 22);
    return handle == OUT;
}
static int __stdcall fill_characters(void *handle, char c, DWORD count, DWORD at, DWORD *done)
{
    if (script_fail_now()) return SetLastError(8), 0;
    memset(cells + (at >> 16) * WIDTH + (at & 0xFFFF), c, *done = count);
    return 1;
}
static int __stdcall fill_attributes(void *handle, WORD attribute, DWORD count, DWORD at, DWORD *done)
{
    if (script_fail_now()) return SetLastError(8), 0;
    for (DWORD i = 0; i < count; ++i) attributes[(at >> 16) * WIDTH + (at & 0xFFFF) + i] = attribute;
    return *done = count, 1;
}
static int __stdcall set_cursor(void *handle, DWORD at)
{
    short x = (short)at, y = (short)(at >> 16);
    if (script_fail_now() || x < 0 || y < 0 || x >= WIDTH || y >= HEIGHT) return SetLastError(8), 0;
    screen.x = x, screen.y = y;
    return 1;
}
static int __stdcall set_attribute(void *handle, WORD attribute)
{
    if (script_fail_now()) return SetLastError(8), 0;
    return screen.attribute = attribute, 1;
}

static unsigned code_page = 437;
static unsigned __stdcall console_code_page(void) { return code_page; }

/* ---- Tests ---- */

/* Codes for plain, Shift, Ctrl, Alt; 0: the key gives nothing. */
static const struct {
    int scan, enhanced, codes[4];
} keys[] = {
    {0x01, 0, {0, 0, 0, 0x0001}},                /* Escape */
    {0x02, 0, {0, 0, 0, 0x0078}},                /* 1 */
    {0x03, 0, {0, 0, 0x0003, 0x0079}},           /* 2 */
    {0x0D, 0, {0, 0, 0, 0x0083}},                /* = */
    {0x0E, 0, {0, 0, 0, 0x000E}},                /* Backspace */
    {0x0F, 0, {0, 0x000F, 0x0094, 0x000F}},      /* Tab */
    {0x1C, 0, {0, 0, 0, 0x001C}},                /* Enter */
    {0x1D, 0, {0, 0, 0, 0}},                     /* Ctrl itself */
    {0x2A, 0, {0, 0, 0, 0}},                     /* Shift itself */
    {0x35, 0, {0, 0, 0, 0x0035}},
    {0x37, 0, {0, 0, 0x0096, 0x0037}},           /* * of the pad */
    {0x38, 0, {0, 0, 0, 0}},                     /* Alt itself */
    {0x39, 0, {0, 0, 0, 0}},                     /* space */
    {0x3B, 0, {0x003B, 0x0054, 0x005E, 0x0068}}, /* F1 */
    {0x44, 0, {0x0044, 0x005D, 0x0067, 0x0071}}, /* F10 */
    {0x45, 0, {0, 0, 0, 0}},                     /* Num Lock */
    {0x47, 0, {0x0047, 0, 0x0077, 0}},           /* 7 of the pad */
    {0x48, 0, {0x0048, 0, 0x008D, 0}},
    {0x49, 0, {0x0049, 0, 0x0084, 0}},
    {0x4A, 0, {0, 0, 0x008E, 0x004A}},           /* - of the pad */
    {0x4B, 0, {0x004B, 0, 0x0073, 0}},
    {0x4C, 0, {0x004C, 0, 0x008F, 0}},
    {0x4D, 0, {0x004D, 0, 0x0074, 0}},
    {0x4E, 0, {0, 0, 0x0090, 0x004E}},           /* + of the pad */
    {0x4F, 0, {0x004F, 0, 0x0075, 0}},
    {0x50, 0, {0x0050, 0, 0x0091, 0}},
    {0x51, 0, {0x0051, 0, 0x0076, 0}},
    {0x52, 0, {0x0052, 0, 0x0092, 0}},
    {0x53, 0, {0x0053, 0, 0x0093, 0}},
    {0x57, 0, {0xE085, 0xE087, 0xE089, 0xE08B}}, /* F11 */
    {0x58, 0, {0xE086, 0xE088, 0xE08A, 0xE08C}}, /* F12 */
    {0x13B, 0, {0, 0, 0, 0}},                    /* no scan code of a keyboard */
    {0xFFFF, 0, {0, 0, 0, 0}},
    {0x1C, 1, {0x0D00, 0x0D00, 0x0A00, 0x00A6}},
    {0x35, 1, {0x2F00, 0x3F00, 0x0095, 0x00A4}},
    {0x47, 1, {0xE047, 0xE047, 0xE077, 0x0097}},
    {0x48, 1, {0xE048, 0xE048, 0xE08D, 0x0098}},
    {0x49, 1, {0xE049, 0xE049, 0xE086, 0x0099}},
    {0x4B, 1, {0xE04B, 0xE04B, 0xE073, 0x009B}},
    {0x4D, 1, {0xE04D, 0xE04D, 0xE074, 0x009D}},
    {0x4F, 1, {0xE04F, 0xE04F, 0xE075, 0x009F}},
    {0x50, 1, {0xE050, 0xE050, 0xE091, 0x00A0}},
    {0x51, 1, {0xE051, 0xE051, 0xE076, 0x00A1}},
    {0x52, 1, {0xE052, 0xE052, 0xE092, 0x00A2}},
    {0x53, 1, {0xE053, 0xE053, 0xE093, 0x00A3}},
    {0x3B, 1, {0, 0, 0, 0}},
    {0x5B, 1, {0, 0, 0, 0}},
};

/* Which modifiers are held, and the column that is due: Alt before Ctrl before Shift. */
static const struct {
    int state, column;
} modifiers[] = {
    {0, 0}, {NUM_LOCK, 0}, {SHIFTED, 1}, {LEFT_CTRL, 2}, {RIGHT_CTRL | SHIFTED, 2}, {LEFT_ALT, 3},
    {RIGHT_ALT | LEFT_CTRL, 3}, {LEFT_ALT | SHIFTED | RIGHT_CTRL, 3},
};

static void extended_keys(void)
{
    char label[40];
    check_label = label;
    for (size_t i = 0; i < sizeof keys / sizeof *keys; ++i)
        for (size_t m = 0; m < sizeof modifiers / sizeof *modifiers; ++m) {
            int code = keys[i].codes[modifiers[m].column];
            int state = modifiers[m].state | (keys[i].enhanced ? ENHANCED : 0);
            sprintf(label, "scan code %x, state %x", keys[i].scan, state);
            forget_events();
            press(keys[i].scan, state, 0);
            CHECK_INT(_kbhit(), code != 0);
            CHECK_INT(_getch(), code ? code >> 8 : EOF);
            forget_events();
            CHECK_INT(_getch(), code ? code & 0xFF : EOF); /* without an event */
            press(keys[i].scan, state, 0);
            CHECK_INT(_getwch(), code ? code >> 8 : WEOF);
            forget_events();
            CHECK_INT(_getwch(), code ? code & 0xFF : WEOF);
        }
    check_label = "";
    /* how many codes there are in all, column by column */
    static const int due[4] = {23, 13, 28, 66};
    for (int column = 0; column < 4; ++column) {
        static const int states[4] = {0, SHIFTED, LEFT_CTRL, LEFT_ALT};
        int count = 0;
        for (int scan = 0; scan < 0x300; ++scan) {
            forget_events();
            press(scan, states[column], 0);
            count += _kbhit();
        }
        CHECK_INT(count, due[column]);
    }
    forget_events();
}

static void one_key_at_a_time(void)
{
    forget_events();
    forget_written();
    mode = 0x1F7;
    add_event(2, 1, 0, 0, 'm'); /* the mouse */
    add_event(16, 1, 0, 0, 'f');
    add_event(1, 0, 0x1E, 0, 'u'); /* a key that goes up */
    add_event(1, 1, 0x2A, SHIFTED, 0);
    CHECK_INT(_kbhit(), 0);
    press(0x1E, SHIFTED, 'A');
    press(0x1E, 0, 0xE1);
    CHECK_INT(_kbhit(), 1);
    CHECK_INT(_getch(), 'A');
    CHECK_INT(mode_while_reading, 0);
    CHECK_INT(mode, 0x1F7);
    CHECK_INT(_getch(), 0xE1);
    CHECK_INT(_getch(), EOF);
    CHECK_INT(mode, 0x1F7);
    CHECK_INT(_kbhit(), 0);
    CHECK_STR(written, "");
    /* echo of what is read new, not of what was pending */
    press(0x1E, 0, 'a');
    press(0x3B, 0, 0);
    CHECK_INT(_getche(), 'a');
    CHECK_STR(written, "a");
    forget_written();
    CHECK_INT(_getche(), 0);
    CHECK_INT(written_count, 1);
    CHECK_INT(_kbhit(), 0);
    CHECK_INT(_ungetch('x'), EOF); /* the second byte is pending */
    CHECK_INT(_getche(), 0x3B);
    CHECK_INT(written_count, 1);
    CHECK_INT(_ungetch(EOF), EOF);
    CHECK_INT(_ungetch(0x141), 0x41);
    CHECK_INT(_ungetch('y'), EOF);
    CHECK_INT(_kbhit(), 0);
    CHECK_INT(_getche(), 0x41);
    CHECK_INT(written_count, 1);
    CHECK_INT(_ungetch(0xFF), 0xFF);
    CHECK_INT(_getch(), 0xFF);
    press(0x1E, 0, 'b');
    write_result = 0; /* an echo that fails */
    CHECK_INT(_getche(), EOF);
    write_result = 1;
    /* wide, with pending units of its own */
    forget_events();
    forget_written();
    press(0x1E, 0, 0x20AC);
    CHECK_INT(_ungetch('n'), 'n');
    CHECK_INT(_getwche(), 0x20AC);
    CHECK_WSTR(wide_written, L"\x20AC");
    CHECK_INT(_ungetwch(0xD83D), 0xD83D);
    CHECK_INT(_ungetwch('x'), WEOF);
    CHECK_INT(_getwche(), 0xD83D);
    CHECK_WSTR(wide_written, L"\x20AC");
    CHECK_INT(_ungetwch(WEOF), WEOF);
    CHECK_INT(_getwch(), WEOF);
    CHECK_INT(_getwche(), WEOF);
    CHECK_INT(_getch(), 'n');
    /* more events than the stack should hold: the last one counts */
    forget_events();
    for (int i = 0; i < 150; ++i) add_event(16, 0, 0, 0, 0);
    CHECK_INT(_kbhit(), 0);
    add_event(1, 1, 0x1E, 0, 'z');
    CHECK_INT(_kbhit(), 1);
    CHECK_INT(peeked, 151);
    forget_events();
}

/* ---- Lines ---- */

static const char *typed;
static int read_result = 1;
static int __stdcall read_bytes(void *handle, char *to, DWORD count, DWORD *done, void *reserved)
{
    mode_while_reading = mode;
    for (*done = 0; *done < count && *typed; ++*done) to[*done] = *typed++;
    if (!read_result) SetLastError(8);
    return read_result;
}
static int __stdcall read_units(void *handle, wchar_t *to, DWORD count, DWORD *done, void *reserved)
{
    mode_while_reading = mode;
    for (*done = 0; *done < count && *typed; ++*done) to[*done] = (wchar_t)(unsigned char)*typed++;
    if (!read_result) SetLastError(8);
    return read_result;
}

static void lines(void)
{
    static const struct {
        int capacity;
        const char *typed, *due;
    } cases[] = {
        {80, "hello\r\n", "hello"}, {80, "\r\n", ""},      {7, "hello\r\n", "hello"}, {6, "hello\r\n", "hello"},
        {5, "hello\r\n", "hello"},  {80, "\n", ""},        {80, "x", "x"},            {80, "", ""},
        {1, "\r\n", ""},            {1, "x\r\n", "x"},     {0, "x", ""},              {13, "", ""},
        {10, "a\r", "a\r"},         {80, "a\rb\r\n", "a\rb"}, {2, "\n\r", "\n"},      {200, "\r", "\r"},
    };
    char long_line[300], label[60];
    check_label = label;
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        char buffer[300];
        wchar_t wide[300], due[100];
        sprintf(label, "line case %d", (int)i);
        memset(buffer, '#', sizeof buffer);
        wmemset(wide, '#', 300);
        buffer[0] = (char)cases[i].capacity;
        wide[0] = (wchar_t)cases[i].capacity;
        typed = cases[i].typed;
        CHECK(_cgets(buffer) == buffer + 2);
        CHECK_STR(buffer + 2, cases[i].due);
        CHECK_INT(buffer[1], strlen(cases[i].due));
        CHECK_INT(buffer[cases[i].capacity + 3], '#');
        CHECK_INT(mode_while_reading, 7);
        CHECK_INT(mode, 0x1F7);
        typed = cases[i].typed;
        CHECK(_cgetws(wide) == wide + 2);
        mbstowcs(due, cases[i].due, 100);
        CHECK_WSTR(wide + 2, due);
        CHECK_INT(wide[1], wcslen(due));
        CHECK_INT(wide[cases[i].capacity + 3], '#');
        CHECK_INT(mode, 0x1F7);
    }
    check_label = "";
    char buffer[300] = "\xFF";
    memset(long_line, 'x', 299);
    long_line[299] = 0;
    typed = long_line;
    CHECK(_cgets(buffer) == buffer + 2);
    CHECK_INT((unsigned char)buffer[1], 255);
    CHECK_INT(strlen(buffer + 2), 255);
    read_result = 0;
    wchar_t wide[20] = L"\x08xxxx";
    strcpy(buffer, "\x08xxxx");
    CHECK_ERRNO((size_t)_cgets(buffer), 0, ENOMEM);
    CHECK(buffer[1] == 0 && buffer[2] == 0);
    CHECK_ERRNO((size_t)_cgetws(wide), 0, ENOMEM);
    CHECK(wide[1] == 0 && wide[2] == 0 && mode == 0x1F7);
    read_result = 1;
    CHECK_ERRNO((size_t)_cgets(NULL), 0, EINVAL);
    CHECK_ERRNO((size_t)_cgetws(NULL), 0, EINVAL);
}

/* ---- Text ---- */

static void text(void)
{
    char large[5001];
    memset(large, '\xE4', 5000);
    large[5000] = 0;
    forget_written();
    CHECK_INT(_putch('a'), 'a');
    CHECK_INT(_putch(0x1E4), 0xE4); /* the "C" locale does not recode */
    CHECK_STR(written, "a\xE4");
    CHECK_INT(_cputs("b\n"), 0);
    CHECK_INT(_cputs(""), 0);
    CHECK_INT(_cprintf("%d %s|", 42, "x"), 5);
    CHECK_STR(written, "a\xE4" "b\n42 x|");
    CHECK_INT(_cprintf(""), 0);
    forget_written();
    CHECK_INT(_putwch(0x20AC), 0x20AC);
    CHECK_INT(_cputws(L"w\xD83D\xDE00"), 0);
    CHECK_INT(_cwprintf(L"%ls %5.2f", L"\xE9", 1.5), 7);
    CHECK_WSTR(wide_written, L"\x20ACw\xD83D\xDE00\xE9  1.50");
    CHECK_ERRNO(_cputs(NULL), -1, EINVAL);
    CHECK_ERRNO(_cputws(NULL), -1, EINVAL);
    CHECK_ERRNO(_cprintf(NULL), -1, EINVAL);
    CHECK_ERRNO(_cwprintf(NULL), -1, EINVAL);
    /* a locale's code page is recoded to the console's */
    setlocale(LC_CTYPE, "DE");
    forget_written();
    CHECK_INT(_putch(0xE4), 0x84);
    CHECK_INT(_cputs("\xF6\xFC"), 0);
    CHECK_INT(_cprintf("%c%s", 0xDF, "\xC4"), 2);
    CHECK_STR(written, "\x84\x94\x81\xE1\x8E");
    forget_written();
    CHECK_INT(_cputs(large + 5000 - 4096), 0);
    CHECK(written_count == 4096 && written[0] == '\x84' && written[4095] == '\x84');
    forget_written();
    CHECK_INT(_cputs(large + 5000 - 4097), 0);
    CHECK(written_count == 4097 && written[0] == '\xE4' && written[4096] == '\xE4');
    CHECK(large[4999] == '\xE4');
    forget_events();
    press(0x1E, 0, 0x84);
    press(0x1E, 0, 0x84);
    forget_written();
    CHECK_INT(_getch(), 0xE4);
    CHECK_INT(_getche(), 0xE4);
    CHECK_STR(written, "\x84");
    char line[20] = "\x08";
    typed = "\x84\x94\x81\r\n";
    CHECK(_cgets(line) != NULL);
    CHECK_STR(line + 2, "\xE4\xF6\xFC");
    setlocale(LC_CTYPE, "C");
    /* failures of the system, and what is not written whole */
    write_result = 0;
    CHECK_ERRNO(_putch('a'), EOF, 0);
    CHECK_ERRNO(_putwch('a'), WEOF, 0);
    CHECK_ERRNO(_cputs("a"), -1, EACCES);
    CHECK_ERRNO(_cputws(L"a"), -1, EACCES);
    CHECK_ERRNO(_cprintf("%d", 1), -1, EACCES);
    CHECK_ERRNO(_cwprintf(L"%d", 1), -1, EACCES);
    write_result = 1;
    short_by = 1;
    CHECK_INT(_cputs("ab"), -1);
    CHECK_INT(_cprintf("ab"), -1);
    short_by = 0;
}

/* ---- Formatted input ---- */

static void type(const char *keys)
{
    forget_events();
    for (; *keys; ++keys) press(0, 0, (unsigned char)*keys);
}

static void formatted_input(void)
{
    int a = 0, b = 0;
    char word[20] = "", rest[20] = "";
    wchar_t wide[20] = L"";
    forget_written();
    type("12 -7\rabc def\r");
    CHECK_INT(_cscanf("%d%d", &a, &b), 2);
    CHECK(a == 12 && b == -7);
    CHECK_STR(written, "12 -7\r");
    CHECK_INT(_ungetch('x'), EOF); /* the Enter is pending */
    CHECK_INT(_cscanf("%s %[a-e]", word, rest), 2);
    CHECK_STR(word, "abc");
    CHECK_STR(rest, "de");
    CHECK_STR(written, "12 -7\rabc def"); /* nothing is echoed twice */
    CHECK_INT(_getch(), 'f');
    CHECK_INT(_getch(), '\r');
    CHECK_INT(_cscanf("%d", &a), EOF);
    type("x");
    CHECK_INT(_cscanf("%d", &a), 0);
    CHECK_INT(_getch(), 'x');
    /* a key that is given back comes before its own second byte */
    forget_events();
    press('1', 0, '1');
    press(0x48, ENHANCED, 0);
    press(0, 0, 'q');
    CHECK_INT(_cscanf("%d", &a), 1);
    CHECK_INT(_ungetch('x'), EOF);
    CHECK_INT(_getch(), 0xE0);
    CHECK_INT(_getch(), 0x48);
    CHECK_INT(_getch(), 'q');
    /* a multibyte character that does not exist is given back whole */
    setlocale(LC_CTYPE, "JP");
    code_page = 932;
    type("\x85\x41" "7");
    CHECK_ERRNO(_cscanf("%ls", wide), -1, EILSEQ);
    CHECK_INT(_getch(), 0x85);
    CHECK_INT(_getch(), 0x41);
    CHECK_INT(_getch(), '7');
    setlocale(LC_CTYPE, "C");
    forget_events();
    forget_written();
    press(0, 0, 0x20AC);
    press(0, 0, ' ');
    press(0, 0, '5');
    press(0, 0, '!');
    CHECK_INT(_cwscanf(L"%ls%d", wide, &a), 2);
    CHECK_WSTR(wide, L"\x20AC");
    CHECK_INT(a, 5);
    CHECK_WSTR(wide_written, L"\x20AC 5!");
    CHECK_INT(_getwch(), '!');
    CHECK_ERRNO(_cscanf(NULL), -1, EINVAL);
    CHECK_ERRNO(_cwscanf(NULL), -1, EINVAL);
}

/* ---- The screen ---- */

static void fill_screen(void)
{
    memset(cells, 'x', sizeof cells);
    memset(attributes, 0xEE, sizeof attributes);
    screen.attribute = 0x17, screen.x = 5, screen.y = 3;
}
/* The first and the number of the cells that are blank; 0 and -1 when others lie between them. */
static void find_blank(int *first, int *count)
{
    int last = -1;
    *first = *count = 0;
    for (int i = 0; i < WIDTH * HEIGHT; ++i)
        if (cells[i] == ' ' && attributes[i] == 0x17) {
            if (last < 0) *first = i;
            last = i;
            ++*count;
        }
    if (*count && last - *first + 1 != *count) *count = -1;
}

static void screen_control(void)
{
    int first, count;
    script_fail_from(0, 0);
    fill_screen();
    errno = 0;
    _clreol();
    find_blank(&first, &count);
    CHECK(first == 3 * WIDTH + 5 && count == WIDTH - 5 && screen.x == 5 && screen.y == 3);
    CHECK(_wherex() == 6 && _wherey() == 4);
    _clrscr();
    find_blank(&first, &count);
    CHECK(first == 0 && count == WIDTH * HEIGHT);
    CHECK(_wherex() == 1 && _wherey() == 1);
    _gotoxy(WIDTH, HEIGHT);
    CHECK(screen.x == WIDTH - 1 && screen.y == HEIGHT - 1);
    _gotoxy(1, 1);
    CHECK(screen.x == 0 && screen.y == 0 && errno == 0);
    _gotoxy(0, 1);
    CHECK(screen.x == 0 && screen.y == 0 && errno == EIO);
    static const struct {
        int background, colour, before, due;
    } colours[] = {
        {0, 0x1F, 0x17, 0x1F}, {0, 0x04, 0xA7, 0xA4}, {0, -1, 0x17, 0x1F},  {0, 3, 0x8017, 0x13},
        {1, 0x1F, 0x17, 0xF7}, {1, 4, 0x17, 0x47},    {1, -16, 0x17, 0x07}, {1, 2, 0x8017, 0x27},
    };
    errno = 0;
    for (size_t i = 0; i < sizeof colours / sizeof *colours; ++i) {
        screen.attribute = (WORD)colours[i].before;
        (colours[i].background ? _textbackground : _textcolor)(colours[i].colour);
        CHECK_INT(screen.attribute, colours[i].due);
    }
    CHECK_INT(errno, 0);
    /* each call of the system fails once; clearing still moves the cursor home */
    for (int call = 1; call <= 4; ++call) {
        fill_screen();
        errno = 0;
        script_fail_from(call, 0);
        _clrscr();
        CHECK_INT(errno, ENOMEM);
        if (call < 4) CHECK(screen.x == 0 && screen.y == 0);
    }
    static void (*const others[])(int) = {_textcolor, _textbackground};
    for (int call = 1; call <= 2; ++call)
        for (int i = 0; i < 2; ++i) {
            errno = 0;
            script_fail_from(call, 0);
            others[i](1);
            CHECK_INT(errno, ENOMEM);
        }
    for (int call = 1; call <= 3; ++call) {
        errno = 0;
        script_fail_from(call, 0);
        _clreol();
        CHECK_INT(errno, ENOMEM);
    }
    script_fail_from(1, 1);
    errno = 0;
    _gotoxy(1, 1);
    CHECK_INT(errno, EIO);
    CHECK_ERRNO(_wherex(), -1, ENOMEM);
    CHECK_ERRNO(_wherey(), -1, ENOMEM);
}

/* ---- The lock ---- */

static volatile int other_wrote;
static int write_in_thread(void *unused)
{
    _putch('t');
    other_wrote = 1;
    return 0;
}

static void lock_after_exception(void)
{
    static int caught;
    static char *const nowhere = (char *)16;
    __try {
        _cputs(nowhere);
    } __except (1) {
        ++caught;
    }
    __try {
        _cprintf("%s", nowhere);
    } __except (1) {
        ++caught;
    }
    CHECK_INT(caught, 2);
    thrd_t thread;
    thrd_create(&thread, write_in_thread, NULL);
    struct timespec moment = {0, 10000000};
    for (int i = 0; i < 500 && !other_wrote; ++i) thrd_sleep(&moment, NULL);
    CHECK(other_wrote);
}

int main(void)
{
    script_import("CreateFileW", open_console);
    script_import("GetConsoleMode", get_mode);
    script_import("SetConsoleMode", set_mode);
    script_import("GetNumberOfConsoleInputEvents", count_events);
    script_import("ReadConsoleInputA", read_events);
    script_import("ReadConsoleInputW", read_events);
    script_import("PeekConsoleInputA", peek_events);
    script_import("ReadConsoleA", read_bytes);
    script_import("ReadConsoleW", read_units);
    script_import("WriteConsoleA", write_bytes);
    script_import("WriteConsoleW", write_units);
    script_import("GetConsoleScreenBufferInfo", get_screen);
    script_import("FillConsoleOutputCharacterA", fill_characters);
    script_import("FillConsoleOutputAttribute", fill_attributes);
    script_import("SetConsoleCursorPosition", set_cursor);
    script_import("SetConsoleTextAttribute", set_attribute);
    script_import("GetConsoleCP", console_code_page);
    script_import("GetConsoleOutputCP", console_code_page);
    extended_keys();
    one_key_at_a_time();
    lines();
    text();
    formatted_input();
    screen_control();
    lock_after_exception();
    CHECK_INT(opened, 2);
    script_restore();
    return check_done();
}
