// Positions: 32-bit and 64-bit seeking, end of file, file length.

#include "io/io.h"

#include <io.h>

namespace vexrt {

namespace {

// After a successful seek: reads go on again, and from a place of their own.
void note_move(Descriptor &descriptor, int64_t offset, int origin) {
    descriptor.flags &= static_cast<unsigned char>(~FD_EOF);
    bool only_asked = offset == 0 && origin == SEEK_CUR;
    if (!only_asked) descriptor.dropped_return = false;
}

// The length, with the position left where it was. `at_end` tells whether that is the end.
int64_t length_of(Descriptor &descriptor, bool &at_end) {
    int64_t position = seek64(descriptor, 0, SEEK_CUR);
    if (position == -1) return -1;
    int64_t end = seek64(descriptor, 0, SEEK_END);
    if (end == -1) return -1;
    at_end = position == end;
    if (!at_end && seek64(descriptor, position, SEEK_SET) == -1) return -1;
    return end;
}

int64_t length_of_file(int fd) {
    return with_descriptor(fd, [](Descriptor &descriptor) {
        bool at_end;
        return length_of(descriptor, at_end);
    });
}

} // namespace

int64_t seek64(Descriptor &descriptor, int64_t offset, int origin) {
    if (!has_handle(descriptor)) return -1;
    int64_t position;
    if (!SetFilePointerEx(descriptor.osfhandle, offset, &position, static_cast<DWORD>(origin)))
        return fail_with_last_error();
    note_move(descriptor, offset, origin);
    return position;
}

long seek32(Descriptor &descriptor, long offset, int origin) {
    if (!has_handle(descriptor)) return -1;
    DWORD position =
        SetFilePointer(descriptor.osfhandle, offset, nullptr, static_cast<DWORD>(origin));
    if (position == INVALID_SET_FILE_POINTER) return fail_with_last_error();
    note_move(descriptor, offset, origin);
    return static_cast<long>(position);
}

} // namespace vexrt

using namespace vexrt;

extern "C" long _lseek(int fd, long offset, int origin) {
    return with_descriptor(fd, [=](Descriptor &d) { return seek32(d, offset, origin); });
}

extern "C" long long _lseek64(int fd, long long offset, int origin) {
    return with_descriptor(fd, [=](Descriptor &d) { return seek64(d, offset, origin); });
}

extern "C" long _tell(int fd) { return _lseek(fd, 0, SEEK_CUR); }
extern "C" long long _tell64(int fd) { return _lseek64(fd, 0, SEEK_CUR); }

extern "C" int _eof(int fd) {
    return with_descriptor(fd, [](Descriptor &descriptor) {
        bool at_end;
        return length_of(descriptor, at_end) == -1 ? -1 : static_cast<int>(at_end);
    });
}

extern "C" long long _filelength64(int fd) { return length_of_file(fd); }

// As with a 32-bit seek, a length beyond 32 bits is an invalid parameter.
extern "C" long _filelength(int fd) {
    int64_t length = length_of_file(fd);
    return length < INVALID_SET_FILE_POINTER ? static_cast<long>(length) : fail_with(EINVAL);
}
