// Closing, duplicating and wrapping descriptors.

#include "io/io.h"

#include <fcntl.h>
#include <io.h>

namespace vexrt {

namespace {

// Standard output and standard error may share one handle; it then stays open for the other.
bool shares_handle_with_other_output(int fd, HANDLE handle) {
    if (fd != 1 && fd != 2) return false;
    return descriptor_at(static_cast<unsigned>(3 - fd)).osfhandle == handle;
}

// Makes `target` (locked, free) a duplicate of `source` (locked), which has a handle: the value
// that stands for none also stands for the process, and the system would duplicate that.
bool duplicate_into(int fd, Descriptor &target, const Descriptor &source) {
    HANDLE copy;
    if (!duplicate_handle(source.osfhandle, true, copy)) {
        map_os_error(GetLastError());
        return false;
    }
    set_handle(fd, copy);
    target.encoding = source.encoding;
    target.flags = source.flags & static_cast<unsigned char>(~FD_NOINHERIT);
    return true;
}

// Holds the locks of two descriptors, taken in ascending order; one only when they are the same.
class BothLocked {
public:
    BothLocked(Descriptor &lower, Descriptor &upper) : lower_(lower.lock), upper_(upper.lock) {}

private:
    Locked lower_, upper_; // recursive: the same lock may be taken twice
};

} // namespace

int close_worker(int fd, Descriptor &descriptor) {
    DWORD error = ERROR_SUCCESS;
    HANDLE handle = descriptor.osfhandle;
    if (handle != INVALID_HANDLE_VALUE) {
        if (!shares_handle_with_other_output(fd, handle) && !CloseHandle(handle))
            error = GetLastError();
        free_handle(fd);
    }
    descriptor.flags = 0;
    descriptor.pending_count = 0;
    descriptor.dropped_return = false;
    if (error == ERROR_SUCCESS) return 0;
    map_os_error(error);
    return -1;
}

} // namespace vexrt

using namespace vexrt;

extern "C" int _close(int fd) {
    return with_descriptor(fd,
                           [=](Descriptor &descriptor) { return close_worker(fd, descriptor); });
}

extern "C" int _dup(int fd) {
    return with_descriptor(fd, [](Descriptor &source) {
        if (!has_handle(source)) return -1;
        int copy = allocate_descriptor();
        if (copy < 0) return fail_with(EMFILE);
        Descriptor &target = descriptor_at(static_cast<unsigned>(copy));
        bool done = duplicate_into(copy, target, source);
        target.lock.leave();
        return done ? copy : -1;
    });
}

extern "C" int _dup2(int fd, int fd2) {
    if (!open_descriptor(fd) || static_cast<unsigned>(fd2) >= descriptor_limit)
        return fail_with(EBADF);
    if (!grow_descriptors(static_cast<unsigned>(fd2))) return fail_with(ENOMEM);
    Descriptor &source = descriptor_at(static_cast<unsigned>(fd));
    Descriptor &target = descriptor_at(static_cast<unsigned>(fd2));
    BothLocked guard(fd < fd2 ? source : target, fd < fd2 ? target : source);
    if (!source.is_open()) return fail_with(EBADF);
    if (fd == fd2) return 0;
    if (!has_handle(source)) return -1;
    if (target.is_open()) close_worker(fd2, target);
    return duplicate_into(fd2, target, source) ? 0 : -1;
}

extern "C" int _open_osfhandle(intptr_t number, int oflag) {
    HANDLE handle = reinterpret_cast<HANDLE>(number);
    unsigned char type;
    if (!handle_type_flags(handle, type)) return fail_with_last_error();
    unsigned char flags = type | FD_OPEN;
    if (oflag & O_TEXT) flags |= FD_TEXT;
    if (oflag & O_NOINHERIT) flags |= FD_NOINHERIT;
    if ((oflag & O_APPEND) && !type) flags |= FD_APPEND;

    int fd = allocate_descriptor();
    if (fd < 0) return fail_with(EMFILE);
    set_handle(fd, handle);
    Descriptor &descriptor = descriptor_at(static_cast<unsigned>(fd));
    descriptor.encoding = encoding_ansi;
    descriptor.flags = flags;
    descriptor.lock.leave();
    return fd;
}

extern "C" int _pipe(int fds[2], unsigned int size, int textmode) {
    if (!fds) return fail_with(EINVAL);
    SECURITY_ATTRIBUTES security = {sizeof security, nullptr, !(textmode & O_NOINHERIT)};
    HANDLE ends[2];
    if (!CreatePipe(&ends[0], &ends[1], &security, size)) return fail_with_last_error();
    unsigned char flags = FD_OPEN | FD_PIPE;
    if (!(textmode & O_BINARY)) flags |= FD_TEXT;
    if (textmode & O_NOINHERIT) flags |= FD_NOINHERIT;

    int made[2];
    for (int i = 0; i < 2; ++i) {
        made[i] = allocate_descriptor();
        if (made[i] < 0) {
            if (i == 1)
                with_descriptor(made[0], [&](Descriptor &first) {
                    free_handle(made[0]);
                    first.flags = 0;
                    return 0;
                });
            for (HANDLE end : ends) CloseHandle(end);
            return fail_with(EMFILE);
        }
        Descriptor &descriptor = descriptor_at(static_cast<unsigned>(made[i]));
        descriptor.encoding = encoding_ansi;
        set_handle(made[i], ends[i]);
        descriptor.flags = flags; // open from here on: the next allocation skips it
        descriptor.lock.leave();
    }
    fds[0] = made[0];
    fds[1] = made[1];
    return 0;
}
