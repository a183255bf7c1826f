/* No console: what every function returns, and that the console is not tried again. */
#include "check.h"
#include "script.h"

#include <conio.h>
#include <wchar.h>

static int opened;
static void *__stdcall open_nothing(const wchar_t *name, unsigned long access, unsigned long share,
                                    void *security, unsigned long disposition, unsigned long attributes,
                                    void *model)
{
    ++opened;
    return (void *)-1;
}

/* A function without a result. */
#define CHECK_FAILS(call)                                                                          \
    do {                                                                                           \
        errno = 0;                                                                                 \
        call;                                                                                      \
        CHECK_INT(errno, EIO);                                                                     \
    } while (0)

int main(void)
{
    char buffer[20] = "\x08xxxx";
    wchar_t wide[20] = L"\x08xxxx";
    int n = 77;
    script_import("CreateFileW", open_nothing);
    for (int pass = 0; pass < 2; ++pass) {
        CHECK_INT(_getch(), EOF);
        CHECK_INT(_getche(), EOF);
        CHECK_INT(_getwch(), WEOF);
        CHECK_INT(_getwche(), WEOF);
        CHECK_INT(_kbhit(), 0);
        CHECK_INT(_ungetch('u'), 'u'); /* needs no console */
        CHECK_INT(_getche(), 'u');
        buffer[1] = 'x', wide[1] = 'x';
        CHECK_ERRNO((size_t)_cgets(buffer), 0, EIO);
        CHECK_ERRNO((size_t)_cgetws(wide), 0, EIO);
        CHECK(buffer[1] == 0 && wide[1] == 0);
        CHECK_INT(_putch('a'), EOF);
        CHECK_INT(_putwch('a'), WEOF);
        CHECK_ERRNO(_cputs("a"), -1, EIO);
        CHECK_ERRNO(_cputws(L"a"), -1, EIO);
        CHECK_ERRNO(_cprintf("%d", 1), -1, EIO);
        CHECK_ERRNO(_cwprintf(L""), -1, EIO);
        CHECK_ERRNO(_cscanf("%d", &n), EOF, EIO);
        CHECK_ERRNO(_cwscanf(L"%d", &n), EOF, EIO);
        CHECK_FAILS(_clrscr());
        CHECK_FAILS(_clreol());
        CHECK_FAILS(_gotoxy(1, 1));
        CHECK_FAILS(_textcolor(1));
        CHECK_FAILS(_textbackground(1));
        CHECK_ERRNO(_wherex(), -1, EIO);
        CHECK_ERRNO(_wherey(), -1, EIO);
        script_restore(); /* from now on there would be one, perhaps */
    }
    CHECK_INT(n, 77);
    CHECK_INT(opened, 2); /* the keyboard and the screen, once each */
    return check_done();
}
