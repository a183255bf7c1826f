/* Memory mapping: files shared and private, anonymous memory, offsets, limits, what is left behind. */
#include "check.h"

#include <fcntl.h>
#include <io.h>
#include <stdlib.h>
#include <sys/mman.h>

#define NAME "fs-mapping.tmp"
enum { SIZE = 200000 };

static int open_file(int flags)
{
    return _open(NAME, flags | O_BINARY | O_CREAT, 0x180);
}

static char byte_at(long offset)
{
    char byte = 0;
    int fd = open_file(O_RDONLY);
    _lseek(fd, offset, SEEK_SET);
    _read(fd, &byte, 1);
    _close(fd);
    return byte;
}

int main(void)
{
    static char data[SIZE];
    for (int i = 0; i < SIZE; ++i) data[i] = (char)(i / 100);
    int fd = open_file(O_RDWR | O_TRUNC);
    for (int i = 0; i < SIZE; i += 20000) _write(fd, data + i, 20000);
    char *map = _mmap(NULL, SIZE, PROT_READ, MAP_SHARED, fd, 0);
    CHECK(map != MAP_FAILED);
    CHECK_MEM(map, data, SIZE);
    CHECK_INT(_munmap(map, SIZE), 0);
    /* an offset within the system's granularity, a length beyond the end; the descriptor is closed under it */
    map = _mmap(NULL, SIZE, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 4096 * 17);
    CHECK(map != MAP_FAILED);
    CHECK_MEM(map, data + 4096 * 17, SIZE - 4096 * 17);
    _close(fd);
    map[10] = 'Q';
    CHECK_INT(_msync(map, 100, MS_SYNC), 0);
    CHECK_INT(byte_at(4096 * 17 + 10), 'Q');
    CHECK_ERRNO(_munmap(map + 4096, 100), -1, EINVAL);
    CHECK_ERRNO(_munmap(map - 4096, 100), -1, EINVAL); /* where the system's view begins */
    CHECK_INT(_msync(map, SIZE - 4096 * 17, MS_SYNC), 0);
    CHECK_ERRNO(_msync(map, SIZE * 10, MS_SYNC), -1, ENOMEM);
    CHECK_INT(_munmap(map, 1), 0);
    CHECK_ERRNO(_munmap(map, 1), -1, EINVAL);
    fd = open_file(O_RDWR);
    map = _mmap(NULL, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE, fd, 0);
    CHECK(map != MAP_FAILED);
    map[0] = 'P';
    CHECK_INT(_msync(map, 4096, MS_ASYNC | MS_INVALIDATE), 0);
    CHECK_INT(byte_at(0), 0);
    CHECK_INT(_munmap(map, 4096), 0);
    _close(fd);
    fd = open_file(O_RDONLY);
    CHECK_ERRNO(_mmap(NULL, 10, PROT_WRITE, MAP_SHARED, fd, 0) == MAP_FAILED, 1, EACCES);
    map = _mmap(NULL, 10, PROT_READ | PROT_WRITE, MAP_PRIVATE, fd, 0); /* writing to a copy needs no right */
    CHECK(map != MAP_FAILED);
    if (map != MAP_FAILED) map[1] = 'x', _munmap(map, 10);
    map = _mmap(NULL, 10, PROT_NONE, MAP_SHARED, fd, 0);
    CHECK(map != MAP_FAILED && _munmap(map, 10) == 0);
    char *anonymous = _mmap(NULL, 100000, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    CHECK(anonymous != MAP_FAILED && !anonymous[0] && !anonymous[99999]);
    memset(anonymous, 'a', 100000);
    CHECK_ERRNO(_mmap(anonymous, 10, PROT_READ, MAP_SHARED | MAP_FIXED, fd, 0) == MAP_FAILED, 1, EINVAL);
    CHECK_INT(_munmap(anonymous, 100000), 0);
    enum { FIXED = MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED };
    CHECK_ERRNO(_mmap(anonymous + 4096, 10, PROT_READ, FIXED, -1, 0) == MAP_FAILED, 1, EINVAL);
    CHECK_ERRNO(_mmap(NULL, 10, PROT_READ, FIXED, -1, 0) == MAP_FAILED, 1, EINVAL);
    map = _mmap(anonymous, 10, PROT_READ, MAP_SHARED | MAP_FIXED, fd, 0);
    CHECK(map == anonymous && map[150] == 1);
    CHECK_INT(_munmap(map, 10), 0);
    CHECK_ERRNO(_mmap(NULL, 0, PROT_READ, MAP_SHARED, fd, 0) == MAP_FAILED, 1, EINVAL);
    CHECK_ERRNO(_mmap(NULL, (size_t)-5, PROT_READ, MAP_SHARED, fd, 0) == MAP_FAILED, 1, EINVAL);
    CHECK_ERRNO(_mmap(NULL, 10, PROT_READ, 0, fd, 0) == MAP_FAILED, 1, EINVAL);
    CHECK_ERRNO(_mmap(NULL, 10, PROT_READ, MAP_SHARED | MAP_PRIVATE, fd, 0) == MAP_FAILED, 1, EINVAL);
    CHECK_ERRNO(_mmap(NULL, 10, 8, MAP_SHARED, fd, 0) == MAP_FAILED, 1, EINVAL);
    CHECK_ERRNO(_mmap(NULL, 10, PROT_READ, MAP_SHARED, fd, 100) == MAP_FAILED, 1, EINVAL);
    CHECK_ERRNO(_mmap(NULL, 10, PROT_READ, MAP_SHARED, fd, -4096) == MAP_FAILED, 1, EINVAL);
    CHECK_ERRNO(_mmap(NULL, 10, PROT_READ, MAP_SHARED, fd, 4096 * 100) == MAP_FAILED, 1, EINVAL);
    CHECK_ERRNO(_mmap(NULL, 10, PROT_READ, MAP_SHARED, 8000, 0) == MAP_FAILED, 1, EBADF);
    _close(fd);
    int ends[2];
    _pipe(ends, 10, O_BINARY);
    CHECK_ERRNO(_mmap(NULL, 10, PROT_READ, MAP_SHARED, ends[0], 0) == MAP_FAILED, 1, ENODEV);
    CHECK_ERRNO(_munmap(data, 10), -1, EINVAL);
    CHECK_ERRNO(_munmap(NULL, 10), -1, EINVAL);
    CHECK_ERRNO(_msync(data + 1, 10, MS_SYNC), -1, EINVAL);
    CHECK_ERRNO(_msync(NULL, 10, MS_SYNC), -1, ENOMEM);
    CHECK_ERRNO(_msync(NULL, 10, MS_SYNC | MS_ASYNC), -1, EINVAL);
    CHECK_INT(remove(NAME), 0);
    return check_done();
}
