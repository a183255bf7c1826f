// _access: whether a file exists, and whether it may be written.

#include "core/errno.h"
#include "platform/kernel32.h"

#include <io.h>

namespace vexrt {

namespace {

constexpr int write_access = 2, every_access = 6;

DWORD attributes_of(const char *path) { return GetFileAttributesA(path); }
DWORD attributes_of(const wchar_t *path) { return GetFileAttributesW(path); }

template <typename Char>
int check_access(const Char *path, int mode) {
    if (!path || mode & ~every_access) return fail_with(EINVAL);
    DWORD attributes = attributes_of(path);
    if (attributes == INVALID_FILE_ATTRIBUTES) return fail_with_last_error();
    bool denied = mode & write_access && attributes & FILE_ATTRIBUTE_READONLY &&
                  !(attributes & FILE_ATTRIBUTE_DIRECTORY);
    return denied ? fail_with(EACCES) : 0;
}

} // namespace

} // namespace vexrt

extern "C" int _access(const char *path, int mode) { return vexrt::check_access(path, mode); }
extern "C" int _waccess(const wchar_t *path, int mode) { return vexrt::check_access(path, mode); }
