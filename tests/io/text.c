/* Text translation of descriptors: line ends, Ctrl-Z, what lies across the edge of a read or write. */
#include "check.h"
#include "script.h"

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <wchar.h>

__declspec(dllimport) int __stdcall DeleteFileA(const char *path);
__declspec(dllimport) void __stdcall SetLastError(unsigned long code);

#define NAME "text.tmp"

static int reopen(const void *bytes, unsigned size, int oflag)
{
    int fd = _open(NAME, O_WRONLY | O_CREAT | O_TRUNC | O_BINARY, S_IWRITE);
    CHECK_INT(_write(fd, bytes, size), size);
    _close(fd);
    return _open(NAME, oflag);
}

static void test_read_lines(void)
{
    static const struct {
        const char *file, *due;
        unsigned piece; /* bytes a read */
    } cases[] = {
        {"a\r\nb", "a\nb", 16},
        {"a\r\nb", "a\nb", 1},
        {"a\r\nb", "a\nb", 2}, /* the CR ends a read: the LF comes with the next */
        {"a\rb\n\nc", "a\rb\n\nc", 16},
        {"a\rb\n\nc", "a\rb\n\nc", 2},
        {"\r\r\n", "\r\n", 16},
        {"\r\r\n", "\r\n", 1},
        {"\r\r\n", "\r\n", 2},
        {"\r", "\r", 16},
        {"a\r", "a\r", 2},
        {"\r\n\r\n\r\n", "\n\n\n", 1},
        {"\r\n\r\n\r\n", "\n\n\n", 3},
        {"ab\x1A" "cd", "ab", 16},
        {"ab\x1A" "cd", "ab", 1},
        {"\x1A", "", 4},
    };
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        char text[64];
        int length = 0, count;
        check_label = check_visible(cases[i].file, strlen(cases[i].file));
        int fd = reopen(cases[i].file, (unsigned)strlen(cases[i].file), O_RDONLY | O_TEXT);
        while ((count = _read(fd, text + length, cases[i].piece)) > 0) length += count;
        CHECK_INT(count, 0);
        CHECK_INT(length, strlen(cases[i].due));
        CHECK_MEM(text, cases[i].due, strlen(cases[i].due));
        _close(fd);
    }
    check_label = "";
}

static void test_split_pair(void)
{
    static char bytes[4097], text[4096];
    memset(bytes, 'x', sizeof bytes);
    bytes[4095] = '\r';
    bytes[4096] = '\n';
    int fd = reopen(bytes, sizeof bytes, O_RDONLY | O_TEXT);
    CHECK_INT(_read(fd, text, 4096), 4095); /* the CR is dropped */
    CHECK_INT(_read(fd, text, 4096), 1);
    CHECK_INT(text[0], '\n');
    _close(fd);
}

static void test_ctrl_z_lasts_until_a_seek(void)
{
    char text[8];
    int fd = reopen("ab\x1A" "cd", 5, O_RDONLY | O_TEXT);
    CHECK_INT(_read(fd, text, 8), 2);
    CHECK_INT(_read(fd, text, 8), 0);
    CHECK_INT(_lseek(fd, 3, SEEK_SET), 3);
    CHECK_INT(_read(fd, text, 8), 2);
    CHECK_MEM(text, "cd", 2);
    _close(fd);
}

/* On a pipe what was read ahead behind a CR waits for the next read. */
static void test_pipe_look_ahead(void)
{
    int fds[2];
    char text[8];
    _pipe(fds, 1024, O_TEXT);
    int raw = _dup(fds[1]);
    _setmode(raw, O_BINARY);
    _write(raw, "a\rb\r\nc", 6);
    CHECK_INT(_read(fds[0], text, 2), 2);
    CHECK_MEM(text, "a\r", 2);
    CHECK_INT(_read(fds[0], text, 1), 1);
    CHECK_INT(text[0], 'b');
    CHECK_INT(_read(fds[0], text, 1), 1); /* a CR alone is replaced by the LF behind it */
    CHECK_INT(text[0], '\n');
    CHECK_INT(_read(fds[0], text, 8), 1);
    CHECK_INT(text[0], 'c');
    for (int round = 0; round < 2; ++round) {
        _write(raw, "\rd", 2);
        CHECK_INT(_read(fds[0], text, 1), 1);
        if (round == 0) CHECK_INT(_read(fds[0], text, 1), 1); /* does not wait for more */
    }
    _close(raw);
    _close(fds[1]);
    _close(fds[0]);
    int next[2]; /* the same numbers, and nothing of what waited */
    _pipe(next, 1024, O_TEXT);
    CHECK_INT(next[0], fds[0]);
    _write(next[1], "new", 3);
    CHECK_INT(_read(next[0], text, 8), 3);
    CHECK_MEM(text, "new", 3);
    _close(next[0]);
    _close(next[1]);
}

static int(__stdcall *real_read)(void *, void *, unsigned, unsigned long *, void *);
static int __stdcall one_byte(void *file, void *to, unsigned size, unsigned long *done, void *overlapped)
{
    return real_read(file, to, size ? 1 : 0, done, overlapped);
}

/* A descriptor in a Unicode mode, on a pipe or on a file with these bytes. */
static int open_unicode(int pipe, int mode, const char *bytes, unsigned size)
{
    int fds[2] = {-1, -1};
    if (pipe) {
        CHECK_INT(_pipe(fds, 1024, O_BINARY), 0);
        CHECK_INT(_write(fds[1], bytes, size), size);
        _close(fds[1]);
    } else {
        fds[0] = reopen(bytes, size, O_RDONLY | O_BINARY);
    }
    _setmode(fds[0], mode);
    return fds[0];
}

/* Unicode text from pipes and files, given whole or byte by byte, read in pieces that cut it. */
static void test_unicode_edges(void)
{
    static const struct {
        const char *label;
        int mode;
        unsigned size;
        const char *bytes;
        unsigned first, piece; /* bytes of the first read and of the others */
        const wchar_t *due;
    } cases[] = {
        {"the low byte of the unit behind a CR is LF", O_U16TEXT, 8, "a\0\r\0\n\x01z\0", 4, 8, L"a\r\x010Az"},
        {"the high byte is LF", O_U16TEXT, 4, "\r\0\r\n", 2, 2, L"\r\x0A0D"},
        {"line ends of UTF-16", O_U16TEXT, 12, "a\0\r\0\n\0\r\0\n\0b\0", 4, 2, L"a\n\nb"},
        {"half a unit at the end", O_U16TEXT, 3, "a\0b", 8, 8, L"a"},
        {"a CR before a cut sequence", O_U8TEXT, 5, "\r\xE2\x82\xACz", 4, 4, L"\r\x20ACz"},
        {"more is kept than the next read wants", O_U8TEXT, 7, "abc\xE2\x82\xACz", 10, 2, L"abc\x20ACz"},
        {"pairs", O_U8TEXT, 9, "\xF0\x9F\x98\x80" "b\xF0\x9F\x98\x80", 4, 4, L"\xD83D\xDE00" L"b\xD83D\xDE00"},
        {"line ends of UTF-8", O_U8TEXT, 9, "\xC3\xA9\r\n\r\n\rxy", 4, 2, L"\xE9\n\n\rxy"},
    };
    for (size_t i = 0; i < 4 * sizeof cases / sizeof *cases; ++i) {
        int pipe = i & 1, trickle = i >> 1 & 1, count;
        wchar_t text[20] = L"";
        unsigned length = 0, piece = cases[i / 4].first;
        check_label = cases[i / 4].label;
        int fd = open_unicode(pipe, cases[i / 4].mode, cases[i / 4].bytes, cases[i / 4].size);
        if (trickle) real_read = script_import("ReadFile", one_byte);
        for (; (count = _read(fd, text + length / 2, piece)) > 0; piece = cases[i / 4].piece)
            length += (unsigned)count;
        script_restore();
        text[length / 2] = L'\0';
        CHECK_INT(count, 0);
        CHECK_WSTR(text, cases[i / 4].due);
        _close(fd);
    }
    check_label = "";
    for (int pipe = 0; pipe < 2; ++pipe) {
        wchar_t text[4];
        int fd = open_unicode(pipe, O_U8TEXT, "\xF0\x9F\x98\x80zzzzzzzzzzzzzzzz\xE2", 21);
        CHECK_ERRNO(_read(fd, text, 2), -1, EINVAL); /* a pair does not fit, and is not lost */
        CHECK_ERRNO(_read(fd, text, 3), -1, EINVAL);
        CHECK_INT(_read(fd, text, 8), pipe ? 4 : 8);
        CHECK_MEM(text, L"\xD83D\xDE00", 4);
        int count;
        while ((count = _read(fd, text, 8)) > 0) {}
        CHECK_INT(count, -1); /* the cut sequence at the end */
        _close(fd);
    }
}

/* What was read ahead goes with the descriptor; another one of its number starts anew. */
static void test_closing_drops_read_ahead(void)
{
    char text[8];
    for (int round = 0; round < 2; ++round) {
        int fds[2];
        _pipe(fds, 1024, O_TEXT);
        _write(fds[1], "\rab", 3);
        CHECK_INT(_read(fds[0], text, 1), 1);
        CHECK_INT(text[0], '\r');
        _close(fds[0]);
        _close(fds[1]);
    }
}

static void check_written(const char *text, unsigned size, int result, const char *due, long length)
{
    static char bytes[16384];
    int fd = _open(NAME, O_WRONLY | O_CREAT | O_TRUNC | O_TEXT, S_IWRITE);
    CHECK_INT(_write(fd, text, size), result);
    _close(fd);
    fd = _open(NAME, O_RDONLY);
    CHECK_INT(_read(fd, bytes, sizeof bytes), length);
    CHECK_MEM(bytes, due, (size_t)length);
    _close(fd);
}

static void test_write_lines(void)
{
    static char text[5000], due[5000];
    check_written("x\n", 2, 2, "x\r\n", 3);
    check_written("\n\n", 2, 2, "\r\n\r\n", 4);
    /* Behind every full chunk one byte is passed over. */
    for (int i = 0; i < 5000; ++i) text[i] = (char)('a' + i % 23);
    memcpy(due, text, 2047);
    check_written(text, 2047, 2047, due, 2047);
    check_written(text, 2048, 2047, due, 2047);
    memcpy(due + 2047, text + 2048, 2047);
    check_written(text, 4096, 4094, due, 4094);
    /* A pair may take a chunk to 2048 bytes. */
    memset(text, '\n', 1024);
    text[1024] = 'x';
    text[1025] = 'y';
    for (int i = 0; i < 1024; ++i) memcpy(due + 2 * i, "\r\n", 2);
    due[2048] = 'y';
    check_written(text, 1026, 1025, due, 2049);
}

static int write_allowance;
static unsigned write_error;
static int(__stdcall *real_write)(void *, const void *, unsigned, unsigned long *, void *);
static int __stdcall short_write(void *file, const void *from, unsigned size, unsigned long *done,
                                 void *overlapped)
{
    *done = 0;
    if (write_error) {
        SetLastError(write_error);
        return 0;
    }
    if ((int)size > write_allowance) size = (unsigned)write_allowance;
    write_allowance -= (int)size;
    return size == 0 || real_write(file, from, size, done, overlapped);
}

static void test_write_failures(void)
{
    static const struct {
        unsigned system;
        int error;
    } errors[] = {{5, EBADF}, {112, ENOSPC}, {109, EPIPE}, {232, EPIPE}, {6, EINVAL}, {33, EACCES}};
    int fd = reopen("", 0, O_WRONLY | O_TEXT);
    real_write = script_import("WriteFile", short_write);
    for (size_t i = 0; i < sizeof errors / sizeof *errors; ++i) {
        write_error = errors[i].system;
        CHECK_ERRNO(_write(fd, "abc", 3), -1, errors[i].error);
    }
    write_error = 0;
    write_allowance = 2;
    CHECK_ERRNO(_write(fd, "abc", 3), 2, 0);
    CHECK_ERRNO(_write(fd, "abc", 3), -1, ENOSPC); /* nothing went, without an error */
    CHECK_ERRNO(_write(fd, "\x1A", 1), -1, ENOSPC);
    script_restore();
    _close(fd);
    fd = _open("NUL", O_WRONLY | O_TEXT);
    real_write = script_import("WriteFile", short_write);
    write_allowance = 0;
    int device = _isatty(fd);
    CHECK_ERRNO(_write(fd, "\x1A", 1), device ? 0 : -1, device ? 0 : ENOSPC);
    script_restore();
    _close(fd);
}

static unsigned read_error;
static int __stdcall failing_read(void *file, void *to, unsigned size, unsigned long *done, void *o)
{
    SetLastError(read_error);
    return 0;
}

static void test_read_failures(void)
{
    static const struct {
        unsigned system;
        int result, error;
    } cases[] = {{5, -1, EBADF}, {109, 0, 0}, {6, -1, EINVAL}, {1816, -1, ENOMEM}};
    char byte;
    int fd = reopen("x", 1, O_RDONLY | O_TEXT);
    script_import("ReadFile", failing_read);
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        read_error = cases[i].system;
        CHECK_ERRNO(_read(fd, &byte, 1), cases[i].result, cases[i].error);
    }
    script_restore();
    _close(fd);
}

int main(void)
{
    test_read_lines();
    test_split_pair();
    test_ctrl_z_lasts_until_a_seek();
    test_pipe_look_ahead();
    test_unicode_edges();
    test_closing_drops_read_ahead();
    test_write_lines();
    test_write_failures();
    test_read_failures();
    DeleteFileA(NAME);
    return check_done();
}
