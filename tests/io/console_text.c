/* Unicode text on a console: the system's console functions are scripted, the device is the null device. */
#include "check.h"
#include "script.h"

#include <fcntl.h>
#include <io.h>
#include <locale.h>
#include <stdlib.h>

typedef unsigned long DWORD;

static const wchar_t *typed;
static wchar_t written[100];
static DWORD written_count;

static int __stdcall is_console(void *handle, DWORD *mode) { return *mode = 7, 1; }

static int __stdcall read_console(void *handle, wchar_t *to, DWORD count, DWORD *done, void *reserved)
{
    for (*done = 0; *done < count && *typed; ++*done) to[*done] = *typed++;
    return 1;
}

static int __stdcall write_console(void *handle, const wchar_t *from, DWORD count, DWORD *done, void *reserved)
{
    memcpy(written + written_count, from, 2 * count);
    written_count += *done = count;
    return 1;
}

static int __stdcall read_bytes(void *handle, char *to, DWORD count, DWORD *done, void *overlapped)
{
    for (*done = 0; *done < count && *typed; ++*done) to[*done] = (char)*typed++;
    return 1;
}

static unsigned __stdcall code_page_437(void) { return 437; }

int main(void)
{
    script_import("GetConsoleMode", is_console);
    script_import("ReadConsoleW", read_console);
    script_import("WriteConsoleW", write_console);
    static const struct {
        const wchar_t *typed, *due;
    } cases[] = {
        {L"a\r\nb", L"a\nb"},
        {L"ab\r", L"ab\r"}, /* the last one passes through */
        {L"\r\r\n\n", L"\r\n\n"},
        {L"\xD83D\xDE00\x20AC", L"\xD83D\xDE00\x20AC"},
        {L"ab\x1A" L"cd", L"ab"},
    };
    for (int mode = O_U8TEXT, pass = 0; pass < 2; ++pass, mode = O_U16TEXT)
        for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
            wchar_t buffer[20] = L"";
            int fd = _open("NUL", O_RDWR);
            _setmode(fd, mode);
            typed = cases[i].typed;
            int got = _read(fd, buffer, 38);
            CHECK_INT(got, 2 * wcslen(cases[i].due));
            buffer[got / 2] = 0;
            CHECK_WSTR(buffer, cases[i].due);
            if (i == 4) CHECK_INT(_read(fd, buffer, 38), 0); /* at the end of the file until a seek */
            CHECK_ERRNO(_read(fd, buffer, 3), i == 4 ? 0 : -1, i == 4 ? 0 : EINVAL);
            written_count = 0;
            CHECK_INT(_write(fd, L"x\n\xE9\xD83D\xDE00", 10), 10);
            written[written_count] = 0;
            CHECK_WSTR(written, L"x\r\n\xE9\xD83D\xDE00");
            _close(fd);
        }
    /* bytes from a console are recoded from its code page to that of the locale */
    script_import("ReadFile", read_bytes);
    script_import("GetConsoleCP", code_page_437);
    char text[20] = "";
    int fd = _open("NUL", O_RDWR | O_TEXT);
    setlocale(LC_CTYPE, "DE");
    typed = L"\x84\x94\x81\r\n";
    CHECK_INT(_read(fd, text, 10), 4);
    CHECK_MEM(text, "\xE4\xF6\xFC\n", 4);
    typed = L"a\x1A" L"b"; /* on a device the Ctrl-Z comes through */
    CHECK_INT(_read(fd, text, 10), 2);
    CHECK_MEM(text, "a\x1A", 2);
    script_restore();
    return check_done();
}
