/* Descriptors: opening, duplicating, positions, sizes, modes, locks; bad numbers everywhere. */
#include "check.h"
#include "child.h"
#include "script.h"

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/locking.h>
#include <sys/stat.h>

__declspec(dllimport) int __stdcall DeleteFileA(const char *path);
__declspec(dllimport) unsigned long __stdcall GetFileAttributesA(const char *path);
__declspec(dllimport) int __stdcall GetExitCodeThread(void *thread, unsigned long *status);
__declspec(dllimport) int __stdcall SetFileAttributesA(const char *path, unsigned long attributes);

#define NAME "descriptors.tmp"

static void write_file(const void *bytes, unsigned size)
{
    int fd = _open(NAME, O_WRONLY | O_CREAT | O_TRUNC | O_BINARY, S_IWRITE);
    CHECK_INT(_write(fd, bytes, size), size);
    CHECK_INT(_close(fd), 0);
}

static void check_file(const char *due, long size)
{
    char bytes[256];
    int fd = _open(NAME, O_RDONLY);
    CHECK_INT(_filelength(fd), size);
    CHECK_INT(_read(fd, bytes, sizeof bytes), size);
    CHECK_MEM(bytes, due, (size_t)size);
    _close(fd);
}

static void test_open_flags(void)
{
    static const struct {
        const char *label;
        int exists, oflag, shflag, error; /* 0: opens */
    } cases[] = {
        {"missing, read", 0, O_RDONLY, SH_DENYNO, ENOENT},
        {"missing, create", 0, O_RDWR | O_CREAT, SH_DENYNO, 0},
        {"missing, truncate", 0, O_RDWR | O_TRUNC, SH_DENYNO, ENOENT},
        {"present, exclusive", 1, O_RDWR | O_CREAT | O_EXCL, SH_DENYNO, EEXIST},
        {"present, exclusive and truncate", 1, O_RDWR | O_CREAT | O_TRUNC | O_EXCL, SH_DENYNO, EEXIST},
        {"present, exclusive alone", 1, O_RDWR | O_EXCL, SH_DENYNO, 0},
        {"both directions at once", 1, O_WRONLY | O_RDWR, SH_DENYNO, EINVAL},
        {"text and binary", 1, O_TEXT | O_BINARY, SH_DENYNO, EINVAL},
        {"two encodings", 1, O_U8TEXT | O_U16TEXT, SH_DENYNO, EINVAL},
        {"binary and encoding", 1, O_BINARY | O_U8TEXT, SH_DENYNO, EINVAL},
        {"no share mode", 1, O_RDONLY, 0, EINVAL},
        {"share mode beyond", 1, O_RDONLY, 0x50, EINVAL},
    };
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        check_label = cases[i].label;
        DeleteFileA(NAME);
        if (cases[i].exists) write_file("x", 1);
        errno = 0;
        int fd = _sopen(NAME, cases[i].oflag, cases[i].shflag, S_IWRITE);
        if (cases[i].error == 0) CHECK_INT(fd, 3);
        else check_errno(fd, errno, -1, cases[i].error, __FILE__, __LINE__, "_sopen");
        if (fd >= 0) _close(fd);
    }
    check_label = "";
    CHECK_ERRNO(_open(NULL, O_RDONLY), -1, EINVAL);
}

static void test_permissions(void)
{
    DeleteFileA(NAME);
    int fd = _open(NAME, O_WRONLY | O_CREAT, 0);
    CHECK(fd >= 0);
    _close(fd);
    CHECK_INT(GetFileAttributesA(NAME) & 1, 1);
    SetFileAttributesA(NAME, 0x80);
    fd = _creat(NAME, S_IWRITE);
    CHECK_INT(_setmode(fd, 0), O_BINARY);
    _close(fd);
    fd = _open(NAME, O_RDWR | O_TEMPORARY);
    CHECK(fd >= 0);
    _close(fd);
    CHECK_INT(GetFileAttributesA(NAME), 0xFFFFFFFFu);
    /* Opening it again for writing alone would delete it in between. */
    write_file("x", 1);
    fd = _open(NAME, O_WRONLY | O_APPEND | O_U8TEXT | O_TEMPORARY);
    CHECK(fd >= 0);
    _close(fd);
}

static void test_sharing(void)
{
    write_file("x", 1);
    int fd = _sopen(NAME, O_RDONLY, SH_DENYRW);
    CHECK_ERRNO(_sopen(NAME, O_RDONLY, SH_DENYNO), -1, EACCES);
    _close(fd);
    fd = _sopen(NAME, O_RDONLY, SH_DENYWR);
    CHECK_ERRNO(_sopen(NAME, O_WRONLY, SH_DENYNO), -1, EACCES);
    int other = _sopen(NAME, O_RDONLY, SH_DENYNO);
    CHECK_INT(other, 4);
    _close(other);
    _close(fd);
}

static void test_lowest_free(void)
{
    write_file("abc", 3);
    int a = _open(NAME, O_RDONLY), b = _open(NAME, O_RDONLY);
    CHECK_INT(a, 3);
    CHECK_INT(b, 4);
    _close(a);
    CHECK_INT(_dup(b), 3);
    CHECK_INT(_dup2(b, 100), 0);
    CHECK_INT(_dup2(b, b), 0);
    char c;
    CHECK_INT(_read(100, &c, 1), 1); /* the three share one position */
    CHECK_INT(_tell(3), 1);
    CHECK_ERRNO(_dup2(b, 8192), -1, EBADF);
    CHECK_ERRNO(_dup2(b, -1), -1, EBADF);
    CHECK_INT(_dup2(b, 8191), 0);
    CHECK_INT(_close(8191), 0);
    _close(100);
    _close(3);
    _close(b);
}

static void test_all_descriptors(void)
{
    static int fds[8192];
    int count = 0, fd;
    write_file("x", 1);
    while ((fd = _open(NAME, O_RDONLY)) >= 0) fds[count++] = fd;
    CHECK_INT(errno, EMFILE);
    CHECK_INT(count, 8189);
    CHECK_INT(fds[count - 1], 8191);
    CHECK_ERRNO(_dup(0), -1, EMFILE);
    int ends[2] = {-7, -7};
    CHECK_ERRNO(_pipe(ends, 512, O_BINARY), -1, EMFILE);
    _close(fds[100]);
    CHECK_ERRNO(_pipe(ends, 512, O_BINARY), -1, EMFILE); /* the first end is given back */
    CHECK_INT(ends[0], -7);
    CHECK_INT(_open(NAME, O_RDONLY), fds[100]);
    while (count) _close(fds[--count]);
}

static void test_bad_numbers(void)
{
    static const int bad[] = {-1, -2147483647 - 1, 77, 8191, 8192, 2147483647};
    char byte = 0;
    for (size_t i = 0; i < sizeof bad / sizeof *bad; ++i) {
        int fd = bad[i];
        char label[24];
        snprintf(label, sizeof label, "descriptor %d", fd);
        check_label = label;
        CHECK_ERRNO(_close(fd), -1, EBADF);
        CHECK_ERRNO(_read(fd, &byte, 1), -1, EBADF);
        CHECK_ERRNO(_write(fd, &byte, 1), -1, EBADF);
        CHECK_ERRNO(_lseek(fd, 0, SEEK_SET), -1, EBADF);
        CHECK_ERRNO(_lseek64(fd, 0, SEEK_SET), -1, EBADF);
        CHECK_ERRNO(_eof(fd), -1, EBADF);
        CHECK_ERRNO(_filelength(fd), -1, EBADF);
        CHECK_ERRNO(_filelength64(fd), -1, EBADF);
        CHECK_ERRNO(_chsize(fd, 0), -1, EBADF);
        CHECK_ERRNO(_commit(fd), -1, EBADF);
        CHECK_ERRNO(_setmode(fd, O_TEXT), -1, EBADF);
        CHECK_ERRNO(_locking(fd, LK_NBLCK, 1), -1, EBADF);
        CHECK_ERRNO(_dup(fd), -1, EBADF);
        CHECK_ERRNO(_dup2(fd, 5), -1, EBADF);
        CHECK_ERRNO(_get_osfhandle(fd), -1, EBADF);
        CHECK_ERRNO(_isatty(fd), 0, 0);
    }
    check_label = "";
    CHECK_ERRNO(_open_osfhandle(-1, 0), -1, EINVAL);
    write_file("x", 1);
    int fd = _open(NAME, O_RDONLY);
    CHECK_ERRNO(_write(fd, "y", 1), -1, EBADF); /* access denied below */
    CHECK_ERRNO(_read(fd, NULL, 1), -1, EINVAL);
    CHECK_ERRNO(_setmode(fd, 1), -1, EINVAL);
    CHECK_ERRNO(_lseek(fd, -5, SEEK_SET), -1, EINVAL);
    CHECK_ERRNO(_read(fd, NULL, 0), 0, 0);
    _close(fd);
}

static void test_positions_past_4_gib(void)
{
    const long long far = 0x1234567890;
    int fd = _open(NAME, O_RDWR | O_CREAT | O_TRUNC | O_BINARY, S_IWRITE);
    CHECK_INT(_lseek64(fd, far, SEEK_SET), far);
    CHECK_INT(_write(fd, "end", 3), 3);
    CHECK_INT(_tell64(fd), far + 3);
    CHECK_INT(_filelength64(fd), far + 3);
    CHECK_ERRNO(_filelength(fd), -1, EINVAL);
    CHECK_INT(_eof(fd), 1);
    CHECK_INT(_lseek64(fd, -2, SEEK_END), far + 1);
    CHECK_INT(_eof(fd), 0);
    CHECK_INT(_tell64(fd), far + 1);
    CHECK_INT(_chsize64(fd, 10), 0);
    CHECK_INT(_filelength64(fd), 10);
    CHECK_INT(_tell64(fd), far + 1);
    _close(fd);
}

static void test_change_size(void)
{
    char zeros[10000];
    write_file("abc", 3);
    int fd = _open(NAME, O_RDWR | O_TEXT);
    _lseek(fd, 1, SEEK_SET);
    CHECK_INT(_chsize(fd, 9000), 0); /* more than one piece of zeros, none translated */
    CHECK_INT(_setmode(fd, 0), O_TEXT);
    CHECK_INT(_tell(fd), 1);
    CHECK_INT(_filelength(fd), 9000);
    _setmode(fd, O_BINARY);
    CHECK_INT(_read(fd, zeros, sizeof zeros), 8999);
    CHECK_MEM(zeros, "bc\0\0\0", 5);
    CHECK_INT(zeros[8998], 0);
    CHECK_INT(_chsize(fd, 2), 0);
    _close(fd);
    check_file("ab", 2);
    fd = _open(NAME, O_RDONLY);
    CHECK_ERRNO(_chsize(fd, 1), -1, EACCES);
    _close(fd);
}

static void test_ctrl_z_at_end(void)
{
    write_file("line\x1A", 5);
    _close(_open(NAME, O_RDWR | O_BINARY));
    check_file("line\x1A", 5);
    _close(_open(NAME, O_RDONLY | O_TEXT));
    check_file("line\x1A", 5);
    int fd = _open(NAME, O_RDWR | O_TEXT);
    CHECK_INT(_tell(fd), 0);
    _close(fd);
    check_file("line", 4);
    write_file("", 0);
    fd = _open(NAME, O_RDWR | O_TEXT);
    CHECK(fd >= 0);
    _close(fd);
}

static void test_append(void)
{
    write_file("abc", 3);
    int fd = _open(NAME, O_RDWR | O_APPEND | O_BINARY);
    _lseek(fd, 0, SEEK_SET);
    CHECK_INT(_write(fd, "def", 3), 3);
    _close(fd);
    check_file("abcdef", 6);
}

static void test_modes(void)
{
    write_file("x", 1);
    int fd = _open(NAME, O_RDONLY);
    static const struct {
        int set, was;
    } steps[] = {{O_TEXT, O_BINARY},     {O_U8TEXT, O_TEXT},    {O_U16TEXT, O_U8TEXT},
                 {O_WTEXT, O_U16TEXT},   {0, O_U16TEXT},        {O_BINARY, O_U16TEXT},
                 {O_TEXT, O_BINARY},     {O_TEXT, O_TEXT}};
    for (size_t i = 0; i < sizeof steps / sizeof *steps; ++i)
        CHECK_INT(_setmode(fd, steps[i].set), steps[i].was);
    _close(fd);
    CHECK_INT(_setmode(0, 0), O_TEXT); /* standard descriptors start as text */
    CHECK_INT(_setmode(1, 0), O_TEXT);
}

static void test_pipe(void)
{
    int fds[2];
    char text[16];
    CHECK_INT(_pipe(fds, 1024, O_TEXT), 0);
    CHECK_INT(_write(fds[1], "a\nb", 3), 3);
    CHECK_INT(_close(fds[1]), 0);
    CHECK_INT(_read(fds[0], text, sizeof text), 3);
    CHECK_MEM(text, "a\nb", 3);
    CHECK_ERRNO(_read(fds[0], text, sizeof text), 0, 0); /* closed at the other end: end of file */
    _close(fds[0]);
    CHECK_INT(_pipe(fds, 1024, O_BINARY), 0);
    _close(fds[0]);
    CHECK_ERRNO(_write(fds[1], "x", 1), -1, EPIPE);
    _close(fds[1]);
    CHECK_ERRNO(_pipe(NULL, 1024, O_BINARY), -1, EINVAL);
}

static int lock_calls, slept;
static int __stdcall refuse_lock(void *file, unsigned a, unsigned b, unsigned c, unsigned d)
{
    ++lock_calls;
    return 0;
}
static void __stdcall count_sleep(unsigned milliseconds) { slept += (int)milliseconds; }

static void test_locking(void)
{
    write_file("0123456789", 10);
    int a = _open(NAME, O_RDWR), b = _open(NAME, O_RDWR);
    _lseek(a, 2, SEEK_SET);
    CHECK_INT(_locking(a, LK_NBLCK, 4), 0);
    _lseek(b, 5, SEEK_SET);
    CHECK_ERRNO(_locking64(b, LK_NBLCK, 1), -1, EACCES);
    _lseek(b, 6, SEEK_SET);
    CHECK_INT(_locking64(b, LK_NBRLCK, 1), 0);
    CHECK_INT(_locking64(b, LK_UNLCK, 1), 0);
    CHECK_INT(_locking(a, LK_UNLCK, 4), 0);
    CHECK_ERRNO(_locking(a, LK_UNLCK, 4), -1, EACCES);

    script_import("LockFile", refuse_lock);
    script_import("Sleep", count_sleep);
    CHECK_ERRNO(_locking(a, LK_LOCK, 4), -1, EDEADLK);
    script_restore();
    CHECK_INT(lock_calls, 9);
    CHECK_INT(slept, 8000);
    _close(a);
    _close(b);
}

static void test_handles(void)
{
    write_file("abc", 3);
    int a = _open(NAME, O_RDWR);
    int b = _open_osfhandle(_get_osfhandle(_dup(a)), O_TEXT | O_APPEND);
    CHECK_INT(b, 5);
    CHECK_INT(_setmode(b, 0), O_TEXT);
    CHECK_INT(_write(b, "\n", 1), 1);
    CHECK_INT(_commit(b), 0);
    _close(a);
    _close(5);
    check_file("abc\r\n", 5);
    /* The handle of descriptor 4 was closed through 5. */
    CHECK_ERRNO(_close(4), -1, EINVAL);
    CHECK_ERRNO(_close(4), -1, EBADF);
}

/* ---- several threads ---- */

/* Opens, duplicates and closes; each result must still lead to the thread's own file. */
static unsigned long __stdcall use_descriptors(void *number)
{
    char name[32], due[16], got[16];
    unsigned long wrong = 0;
    snprintf(name, sizeof name, "descriptors%d.tmp", (int)number);
    for (int i = 0; i < 300; ++i) {
        int fds[2], fd = _open(name, O_RDWR | O_CREAT | O_TRUNC, S_IWRITE), copy = _dup(fd);
        if (i % 3 == 0) wrong += _dup2(fd, copy) != 0;
        if (i % 3 == 1) wrong += _pipe(fds, 512, O_BINARY) || _dup2(fd, fds[0]) || _close(fds[1]) || _close(fds[0]);
        snprintf(due, sizeof due, "%d %04d", (int)number, i);
        wrong += _write(copy, due, 7) != 7 || _lseek(fd, 0, SEEK_SET) != 0 || _read(fd, got, sizeof got) != 7 ||
                 memcmp(got, due, 6) != 0;
        wrong += _close(copy) || _close(fd);
    }
    DeleteFileA(name);
    return wrong;
}

/* Duplicating takes a descriptor's lock and then the table's, opening the table's first. */
static void test_threads(void)
{
    enum { count = 6 };
    void *threads[count];
    unsigned long wrong = 1;
    for (int i = 0; i < count; ++i) threads[i] = CreateThread(NULL, 0, use_descriptors, (void *)i, 0, NULL);
    for (int i = 0; i < count; ++i) {
        CHECK_INT(WaitForSingleObject(threads[i], 20000), 0); /* nobody waits for ever */
        CHECK(GetExitCodeThread(threads[i], &wrong));
        CHECK_INT(wrong, 0);
        CloseHandle(threads[i]);
    }
}

int main(void)
{
    test_open_flags();
    test_permissions();
    test_sharing();
    test_lowest_free();
    test_all_descriptors();
    test_bad_numbers();
    test_positions_past_4_gib();
    test_change_size();
    test_ctrl_z_at_end();
    test_append();
    test_modes();
    test_pipe();
    test_locking();
    test_handles();
    test_threads();
    DeleteFileA(NAME);
    return check_done();
}
