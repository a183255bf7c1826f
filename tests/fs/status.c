/* File status, times, permissions and links; files and directories made, renamed and removed. */
#include "check.h"
#include "script.h"

#include <direct.h>
#include <fcntl.h>
#include <io.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/utime.h>
#include <time.h>

static void make_file(const char *name, const char *text)
{
    FILE *file = fopen(name, "wb");
    fputs(text, file);
    fclose(file);
}

static void test_status(void)
{
    struct stat status;
    struct stat64 status64;
    time_t now = time(NULL);
    make_file("fs-file.txt", "12345");
    CHECK_INT(_stat("fs-file.txt", &status), 0);
    CHECK_INT(status.st_mode, 0x81B6);
    CHECK_INT(status.st_size, 5);
    CHECK_INT(status.st_nlink, 1);
    CHECK_INT(status.st_dev, _getdrive() - 1);
    CHECK_INT(status.st_rdev, status.st_dev);
    CHECK(status.st_mtime + 5 >= now && status.st_mtime <= now + 5);
    CHECK_INT(_wstat64(L"fs-file.txt", &status64), 0);
    CHECK(status64.st_size == 5 && status64.st_mtime == status.st_mtime && status64.st_mode == status.st_mode);
    make_file("fs-file.Bat", "");
    CHECK_INT(_stat("fs-file.Bat", &status), 0);
    CHECK_INT(status.st_mode, 0x81FF);
    CHECK_INT(_chmod("fs-file.Bat", S_IREAD), 0);
    CHECK_INT(_stat("fs-file.Bat", &status), 0);
    CHECK_INT(status.st_mode, 0x816D);
    CHECK_ERRNO(_access("fs-file.Bat", 2), -1, EACCES);
    CHECK_ERRNO(_access("fs-file.Bat", 6), -1, EACCES);
    CHECK_ERRNO(_access("fs-file.Bat", 4), 0, 0);
    CHECK_ERRNO(_access("fs-file.Bat", 1), -1, EINVAL);
    CHECK_INT(_wchmod(L"fs-file.Bat", S_IREAD | S_IWRITE), 0);
    CHECK_INT(_waccess(L"fs-file.Bat", 6), 0);
    CHECK_ERRNO(_access("fs-none", 0), -1, ENOENT);
    CHECK_ERRNO(_stat("fs-none", &status), -1, ENOENT);
    CHECK_ERRNO(_stat("fs-*", &status), -1, ENOENT);
    CHECK_ERRNO(_stat("fs-fil?.txt", &status), -1, ENOENT);
    CHECK_ERRNO(_stat("c:", &status), -1, ENOENT);
    CHECK_ERRNO(_stat("", &status), -1, ENOENT);
    CHECK_ERRNO(_stat(NULL, &status), -1, EINVAL);
    CHECK_ERRNO(_stat("fs-file.txt", NULL), -1, EINVAL);
    CHECK_INT(_stat("c:\\", &status), 0);
    CHECK_INT(status.st_mode, 0x41FF);
    CHECK_INT(status.st_dev, 2);
    CHECK(status.st_mtime == (time_t)-1 && status.st_atime == (time_t)-1 && status.st_ctime == (time_t)-1);
    CHECK_INT(_stat("c:\\windows", &status), 0);
    CHECK_INT(status.st_mode & (S_IFMT | S_IEXEC), S_IFDIR | S_IEXEC);
    CHECK_ERRNO(_stat("q:\\", &status), -1, ENOENT);
    CHECK_INT(_unlink("fs-file.Bat"), 0);
}

/* Network shares: the system's answers are scripted. */
static unsigned long __stdcall full_path(const char *path, unsigned long size, char *to, char **name)
{
    strcpy(to, path);
    return (unsigned long)strlen(path);
}
static unsigned __stdcall drive_type(const char *root) { return strstr(root, "none") ? 1 : 4; }
static void *__stdcall find_nothing(const char *path, void *data) { return (void *)-1; }

static void test_shares(void)
{
    static const struct {
        const char *path;
        int due;
    } cases[] = {
        {"\\\\server\\share", 0},  {"//server/share/", 0},   {"\\\\s\\s", 0},        {"\\\\server\\share\\x", -1},
        {"\\\\server\\", -1},      {"\\\\server", -1},       {"\\\\\\share\\x", -1}, {"\\\\none\\share", -1},
        {"\\server\\share", -1},   {"\\\\server\\\\", -1},
    };
    script_import("GetFullPathNameA", full_path);
    script_import("GetDriveTypeA", drive_type);
    script_import("FindFirstFileA", find_nothing);
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        struct stat status;
        check_label = cases[i].path;
        CHECK_ERRNO(_stat(cases[i].path, &status), cases[i].due, cases[i].due ? ENOENT : 0);
    }
    check_label = "";
    script_restore();
}

static int __stdcall refuse(const char *path, int level, void *data) { return 0; }

/* A file's attributes are taken without a search, where they are the same: every name comes to what a search
   alone makes of it. */
static void test_searches(void)
{
    static const char *const paths[] = {
        "fs-file.txt", "FS-FILE.TXT", ".\\fs-file.txt", "fs-file.txt.", "fs-file.txt ", "fs-file.txt\\",
        "fs-file.txt\\x", "fs-file.txt:x", "fs-file.txt::$DATA", "fs-file<", "fs-file\"txt", "fs-file.tx>",
        "fs-none", "", ".", "..", "...", " ", "\\", "/", "\\\\", "\\\\.\\nul", "nul", "con", "nul.txt", "c:", "c:\\",
        "c:\\.", "c:\\windows", "c:\\windows\\", "c:/windows/.", "c:\\windows\\..", "c:fs-file.txt",
        "c:\\windows\\system32\\kernel32.dll", "c:\\windows\\system32\\none.dll", "\\windows", "q:\\none"};
    for (size_t i = 0; i < sizeof paths / sizeof *paths; ++i) {
        struct stat quick, slow;
        memset(&quick, 0, sizeof quick);
        memset(&slow, 0, sizeof slow);
        check_label = paths[i];
        errno = 0;
        int result = _stat(paths[i], &quick), error = errno;
        script_import("GetFileAttributesExA", refuse);
        CHECK_ERRNO(_stat(paths[i], &slow), result, error);
        script_restore();
        CHECK_MEM(&quick, &slow, sizeof slow);
    }
    check_label = "";
}

static void test_descriptors(void)
{
    struct stat status;
    struct stat64 status64;
    int fd = _open("fs-file.txt", O_RDWR | O_BINARY), ends[2];
    CHECK_INT(_fstat(fd, &status), 0);
    CHECK(status.st_mode == 0x81B6 && status.st_size == 5 && status.st_dev == 0);
    CHECK_INT(_lseek64(fd, 4999999999, SEEK_SET), 4999999999);
    CHECK_INT(_write(fd, "", 1), 1);
    CHECK_INT(_fstat64(fd, &status64), 0);
    CHECK_INT(status64.st_size, 5000000000);
    CHECK_INT(_fstat(fd, &status), 0);
    CHECK_INT(status.st_size, (int)5000000000);
    _close(fd);
    CHECK_INT(_stat64("fs-file.txt", &status64), 0);
    CHECK_INT(status64.st_size, 5000000000);
    CHECK_INT(_pipe(ends, 100, O_BINARY), 0);
    _write(ends[1], "abc", 3);
    CHECK_INT(_fstat(ends[0], &status), 0);
    CHECK(S_ISFIFO(status.st_mode) && status.st_size == 3 && status.st_dev == (unsigned)ends[0]);
    _close(ends[0]);
    _close(ends[1]);
    fd = _open("NUL", O_RDONLY);
    CHECK_INT(_fstat(fd, &status), 0);
    CHECK(S_ISCHR(status.st_mode));
    _close(fd);
    CHECK_ERRNO(_fstat(fd, &status), -1, EBADF);
    CHECK_ERRNO(_fstat(-1, &status), -1, EBADF);
}

static void test_times(void)
{
    struct stat status;
    struct utimbuf times = {1000000000, 1234567890};
    CHECK_INT(_utime("fs-file.txt", &times), 0);
    CHECK_INT(_stat("fs-file.txt", &status), 0);
    CHECK_INT(status.st_mtime, 1234567890);
    CHECK_INT(status.st_atime, 1000000000);
    CHECK_INT(_wutime(L"fs-file.txt", NULL), 0);
    CHECK_INT(_stat("fs-file.txt", &status), 0);
    CHECK(status.st_mtime + 5 >= time(NULL));
    CHECK_ERRNO(_utime("fs-none", NULL), -1, ENOENT);
    CHECK_ERRNO(_utime(NULL, NULL), -1, EINVAL);
}

static void test_names(void)
{
    char buffer[300], small[5];
    CHECK_INT(rename("fs-file.txt", "fs-renamed.txt"), 0);
    make_file("fs-file.txt", "");
    CHECK_ERRNO(rename("fs-renamed.txt", "fs-file.txt"), -1, EEXIST);
    CHECK_ERRNO(rename("fs-none", "fs-other"), -1, ENOENT);
    CHECK_INT(_wrename(L"fs-renamed.txt", L"fs-again.txt"), 0);
    CHECK_INT(remove("fs-again.txt"), 0);
    CHECK_ERRNO(remove("fs-again.txt"), -1, ENOENT);
    CHECK_INT(_wremove(L"fs-file.txt"), 0);
    CHECK_ERRNO(_wunlink(L"fs-file.txt"), -1, ENOENT);
    CHECK_ERRNO(remove(NULL), -1, EINVAL);
    char *start = _getcwd(NULL, 0);
    CHECK(start != NULL);
    CHECK_INT(_mkdir("fs-dir"), 0);
    CHECK_ERRNO(_mkdir("fs-dir"), -1, EEXIST);
    CHECK_ERRNO(_mkdir("fs-none\\fs-dir"), -1, ENOENT);
    CHECK_INT(_chdir("fs-dir"), 0);
    CHECK_STR(strrchr(_getcwd(buffer, 300), '\\'), "\\fs-dir");
    CHECK_STR(_getdcwd(0, NULL, 300), buffer);
    CHECK_STR(_getdcwd(_getdrive(), small, 5) ? "" : NULL, NULL);
    CHECK_INT(errno, ERANGE);
    CHECK_ERRNO(_getcwd(small, 5) == NULL, 1, ERANGE);
    CHECK_ERRNO(_getcwd(small, 0) == NULL, 1, EINVAL);
    CHECK_ERRNO(_getdcwd(27, NULL, 0) == NULL, 1, EACCES);
    CHECK_ERRNO(_chdrive(0), -1, EACCES);
    CHECK_ERRNO(_chdrive(17), -1, EACCES);
    int drive = _getdrive();
    CHECK_INT(_chdrive(3), 0);
    CHECK_INT(_getdrive(), 3);
    CHECK_INT(_chdrive(drive), 0);
    CHECK_STR(strrchr(_getcwd(NULL, 0), '\\'), "\\fs-dir"); /* each drive keeps its own */
    CHECK_INT(_wmkdir(L"\x20AC"), 0);
    CHECK_INT(_wchdir(L"\x20AC"), 0);
    wchar_t *wide = _wgetcwd(NULL, 0);
    CHECK_WSTR(wcsrchr(wide, L'\\'), L"\\\x20AC");
    CHECK_INT(_chdir("..\\.."), 0);
    CHECK_ERRNO(_rmdir("fs-dir"), -1, ENOTEMPTY);
    CHECK_INT(_wrmdir(L"fs-dir\\\x20AC"), 0);
    CHECK_ERRNO(remove("fs-dir"), -1, EACCES);
    CHECK_INT(_rmdir("fs-dir"), 0);
    CHECK_ERRNO(_chdir("fs-dir"), -1, ENOENT);
    CHECK_ERRNO(_chdir(""), -1, ENOENT);
    CHECK_ERRNO(_rmdir(""), -1, ENOENT);
    CHECK_ERRNO(_wmkdir(L""), -1, ENOENT);
    CHECK_ERRNO(rename("fs-dir", ""), -1, ENOENT);
    make_file("fs-target", "linked");
    if (_symlink("fs-target", "fs-link") == 0) {
        struct stat status;
        CHECK_INT(_stat("fs-link", &status), 0);
        CHECK_INT(remove("fs-link"), 0);
    } else {
        CHECK(errno == EPERM || errno == ENOSYS);
    }
    CHECK_ERRNO(_symlink("fs-none", "fs-target"), -1, EEXIST);
    CHECK_ERRNO(_symlink("", "x"), -1, ENOENT);
    CHECK_ERRNO(_symlink("x", ""), -1, ENOENT);
    CHECK_ERRNO(_symlink(NULL, "x"), -1, EINVAL);
    CHECK_ERRNO(_wsymlink(L"x", NULL), -1, EINVAL);
    CHECK_WSTR(_wgetdcwd(0, NULL, 0), _wgetcwd(NULL, 0));
    /* wide names open the same files */
    struct stat status, wide_status;
    CHECK_INT(_stat("fs-target", &status), 0);
    CHECK_INT(_wstat(L"fs-target", &wide_status), 0);
    CHECK_MEM(&wide_status, &status, sizeof status);
    int opened[3] = {_wopen(L"fs-target", O_RDONLY), _wsopen(L"fs-target", O_RDWR, 0x40), _wcreat(L"fs-target", 0x180)};
    CHECK(opened[0] > 2 && opened[1] > 2 && opened[2] > 2);
    CHECK_INT(_filelength(opened[0]), 0); /* the last one cut it */
    FILE *stream = _wfdopen(opened[2], L"wb");
    CHECK_INT(fputs("again", stream), 0);
    CHECK_INT(fclose(stream), 0);
    CHECK_INT(_filelength(opened[1]), 5);
    _close(opened[0]);
    _close(opened[1]);
    remove("fs-target");
}

int main(void)
{
    test_status();
    test_shares();
    test_searches();
    test_descriptors();
    test_times();
    test_names();
    return check_done();
}
