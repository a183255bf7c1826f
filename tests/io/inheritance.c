/* Descriptors that come from a parent process, by the block in the child's start-up information. */
#include "check.h"
#include "child.h"

#include <fcntl.h>
#include <io.h>
#include <stdlib.h>
#include <sys/stat.h>

__declspec(dllimport) int __stdcall DeleteFileA(const char *path);
__declspec(dllimport) int __stdcall SetHandleInformation(void *, unsigned long, unsigned long);

#define NAME "inheritance.tmp"

static unsigned char block[8192 * 5 + 4];

static void put_word(unsigned at, unsigned value) { memcpy(block + at, &value, 4); }

/* Starts this program with `size` bytes of the block; its exit status. A detached one has no standard
   handles either. */
static int run_with_block(const char *argument, unsigned size, int detached)
{
    char line[1100];
    struct child_startup startup = {.size = sizeof startup};
    struct child_process process;
    startup.reserved_size = (unsigned short)size;
    startup.reserved_bytes = block;
    startup.flags = detached ? 0x100 /* STARTF_USESTDHANDLES */ : 0;
    line[0] = '"';
    unsigned long length = 1 + GetModuleFileNameA(NULL, line + 1, 1024);
    snprintf(line + length, sizeof line - length, "\" %s", argument);
    if (!CreateProcessA(NULL, line, NULL, NULL, 1, detached ? 8 : 0, NULL, NULL, &startup, &process)) return -1;
    int status = child_wait(&process);
    CloseHandle(process.process);
    CloseHandle(process.thread);
    return status;
}

/* In the child: what descriptor 5 is, as an exit status. */
static int look(void)
{
    char text[8] = "";
    int mode = _setmode(5, 0);
    if (mode == -1) return 1;
    if (_read(5, text, 4) != 4 || strcmp(text, "data") != 0) return 2;
    if (_get_osfhandle(3) != -1 || _get_osfhandle(4) != -1) return 3;
    if (_open(NAME, O_RDONLY) != 3) return 4;
    if (_get_osfhandle(70) != -1 && _setmode(70, 0) != O_BINARY) return 5;
    return 100 + (mode == O_TEXT) + 2 * (_get_osfhandle(70) != -1) + 4 * (_setmode(1, 0) == O_TEXT);
}

/* In a child without standard handles: what descriptor 1 is good for. */
static int look_at_nothing(void)
{
    char byte;
    if (_isatty(1) != 0x40 || _setmode(1, 0) != O_TEXT || _get_osfhandle(1) != -1) return 1;
    CHECK_ERRNO(_lseek(1, 0, SEEK_CUR), -1, EBADF);
    CHECK_ERRNO(_write(1, "x", 1), -1, EINVAL);
    CHECK_ERRNO(_read(0, &byte, 1), -1, EINVAL);
    CHECK_ERRNO(_dup(1), -1, EBADF);
    CHECK_ERRNO(_dup2(1, 2), -1, EBADF);
    CHECK_INT(_setmode(2, 0), O_TEXT); /* still open */
    CHECK_INT(_close(1), 0);
    CHECK_INT(_open(NAME, O_RDONLY), 1);
    return check_failed ? 2 : 7;
}

/* Seventy-one entries of which 5 (text) and 70 (binary) are open, 3 has no handle and 4 is not open. */
static unsigned build(void *first, void *second)
{
    enum { count = 71 };
    memset(block, 0, sizeof block);
    put_word(0, count);
    for (unsigned i = 0; i < count; ++i) put_word(4 + count + 4 * i, 0xFFFFFFFF);
    block[4 + 3] = 0x01;
    put_word(4 + count + 4 * 4, (unsigned)(size_t)first);
    block[4 + 5] = 0x81;
    put_word(4 + count + 4 * 5, (unsigned)(size_t)first);
    block[4 + 70] = 0x01;
    put_word(4 + count + 4 * 70, (unsigned)(size_t)second);
    return 4 + 5 * count;
}

int main(int argc, char **argv)
{
    if (argc > 1) return strcmp(argv[1], "none") == 0 ? look_at_nothing() : look();
    int fd = _creat(NAME, S_IWRITE);
    CHECK_INT(_write(fd, "datadata", 8), 8);
    int other = _dup(fd);
    void *first = (void *)_get_osfhandle(fd), *second = (void *)_get_osfhandle(other);
    unsigned size = build(first, second);
    _lseek(fd, 0, SEEK_SET);
    CHECK_INT(run_with_block("look", size, 0), 107);
    _lseek(fd, 0, SEEK_SET);
    CHECK_INT(run_with_block("look", size + 3, 0), 107);
    CHECK_INT(run_with_block("look", size - 1, 0), 1); /* too short: ignored as a whole */
    CHECK_INT(run_with_block("look", 3, 0), 1);
    put_word(0, 0xFFFFFFFF); /* a count whose size does not fit */
    CHECK_INT(run_with_block("look", size, 0), 1);
    size = build(first, (void *)0x7FFC); /* no such handle: skipped */
    _lseek(fd, 0, SEEK_SET);
    CHECK_INT(run_with_block("look", size, 0), 105);
    CHECK_INT(run_with_block("none", 0, 1), 7);
    _close(fd);
    _close(other);
    DeleteFileA(NAME);
    return check_done();
}
