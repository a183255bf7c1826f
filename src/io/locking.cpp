// Locking a range of a file that starts at the current position.

#include "io/io.h"

#include <io.h>
#include <sys/locking.h>

namespace vexrt {

namespace {

constexpr int attempt_count = 9;
constexpr DWORD pause_milliseconds = 1000;

struct Range {
    uint64_t start, length;

    BOOL apply(BOOL(__stdcall *operation)(HANDLE, DWORD, DWORD, DWORD, DWORD), HANDLE file) const {
        return operation(file, static_cast<DWORD>(start), static_cast<DWORD>(start >> 32),
                         static_cast<DWORD>(length), static_cast<DWORD>(length >> 32));
    }
};

int lock_with_patience(const Range &range, HANDLE file) {
    for (int attempt = 1; !range.apply(LockFile, file); ++attempt) {
        if (attempt == attempt_count) return fail_with(EDEADLK);
        Sleep(pause_milliseconds);
    }
    return 0;
}

int lock_range(const Range &range, HANDLE file, int mode) {
    switch (mode) {
    case LK_LOCK:
    case LK_RLCK: return lock_with_patience(range, file);
    case LK_UNLCK: return range.apply(UnlockFile, file) ? 0 : fail_with_last_error();
    default: return range.apply(LockFile, file) ? 0 : fail_with_last_error();
    }
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" int _locking(int fd, int mode, long count) {
    return with_descriptor(fd, [=](Descriptor &descriptor) {
        long start = seek32(descriptor, 0, SEEK_CUR);
        if (start == -1) return -1;
        Range range = {static_cast<unsigned long>(start), static_cast<unsigned long>(count)};
        return lock_range(range, descriptor.osfhandle, mode);
    });
}

extern "C" int _locking64(int fd, int mode, long long count) {
    return with_descriptor(fd, [=](Descriptor &descriptor) {
        int64_t start = seek64(descriptor, 0, SEEK_CUR);
        if (start == -1) return -1;
        Range range = {static_cast<uint64_t>(start), static_cast<uint64_t>(count)};
        return lock_range(range, descriptor.osfhandle, mode);
    });
}
