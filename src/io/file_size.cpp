// Changing the size of a file, and forcing its data to the disk.

#include "heap/heap.h"
#include "io/io.h"

#include <fcntl.h>
#include <io.h>
#include <string.h>

namespace vexrt {

namespace {

constexpr unsigned zeros_size = 4096;

// Appends zeros at the current position, as they are: without text translation.
bool write_zeros(Descriptor &descriptor, int64_t count) {
    void *zeros = heap_allocate(zeros_size);
    if (!zeros) {
        set_errno(ENOMEM);
        return false;
    }
    memset(zeros, 0, zeros_size);
    int mode = setmode_worker(descriptor, O_BINARY);
    while (count > 0) {
        unsigned chunk = count < zeros_size ? static_cast<unsigned>(count) : zeros_size;
        int written = write_worker(descriptor, zeros, chunk);
        if (written <= 0) break;
        count -= written;
    }
    setmode_worker(descriptor, mode);
    heap_release(zeros);
    return count == 0;
}

bool cut(Descriptor &descriptor, int64_t size) {
    if (seek64(descriptor, size, SEEK_SET) == -1) return false;
    if (SetEndOfFile(descriptor.osfhandle)) return true;
    set_errno(EACCES);
    return false;
}

} // namespace

int chsize64_worker(Descriptor &descriptor, int64_t size) {
    int64_t position = seek64(descriptor, 0, SEEK_CUR);
    if (position == -1) return -1;
    int64_t end = seek64(descriptor, 0, SEEK_END);
    if (end == -1) return -1;
    bool done = size > end ? write_zeros(descriptor, size - end) : cut(descriptor, size);
    if (seek64(descriptor, position, SEEK_SET) == -1) return -1;
    return done ? 0 : -1;
}

} // namespace vexrt

using namespace vexrt;

extern "C" int _chsize64(int fd, long long size) {
    return with_descriptor(fd, [=](Descriptor &d) { return chsize64_worker(d, size); });
}

extern "C" int _chsize(int fd, long size) { return _chsize64(fd, size); }

extern "C" int _commit(int fd) {
    return with_descriptor(fd, [](Descriptor &descriptor) {
        return FlushFileBuffers(descriptor.osfhandle) ? 0 : fail_with_last_error();
    });
}
