// File status, by name and by descriptor.

#include "fs/file_api.h"
#include "fs/file_times.h"
#include "io/io.h"

#include <direct.h>
#include <stdlib.h>
#include <sys/stat.h>

namespace vexrt {

namespace {

// What both structures are filled from.
struct Status {
    DWORD attributes;
    uint64_t size;
    time_t accessed, written, created;
};

template <typename Stat>
void fill(Stat &to, const Status &status, unsigned short mode, unsigned device) {
    to = {};
    to.st_dev = to.st_rdev = device;
    to.st_mode = mode;
    to.st_nlink = 1;
    to.st_size = static_cast<decltype(to.st_size)>(status.size);
    to.st_atime = status.accessed;
    to.st_mtime = status.written;
    to.st_ctime = status.created;
}

// ---- the mode ----

template <typename Char>
bool equal_but_for_case(const Char *text, const char *lower) {
    for (; *lower; ++text, ++lower) {
        auto code = static_cast<unsigned>(*text);
        if (code - 'A' < 26) code |= 0x20;
        if (code != static_cast<unsigned>(*lower)) return false;
    }
    return !*text;
}

template <typename Char>
bool is_executable(const Char *path) {
    const Char *extension = nullptr;
    for (; *path; ++path)
        if (*path == '.') extension = path;
    if (!extension) return false;
    constexpr const char *executables[] = {".exe", ".cmd", ".bat", ".com"};
    for (const char *known : executables)
        if (equal_but_for_case(extension, known)) return true;
    return false;
}

unsigned short for_everybody(unsigned mode) {
    unsigned owner = mode & (S_IREAD | S_IWRITE | S_IEXEC);
    return static_cast<unsigned short>(mode | owner >> 3 | owner >> 6);
}

unsigned access_of(DWORD attributes) {
    return attributes & FILE_ATTRIBUTE_READONLY ? S_IREAD : S_IREAD | S_IWRITE;
}

template <typename Char>
unsigned short mode_of(DWORD attributes, const Char *path) {
    if (has_drive(path)) path += 2;
    bool root = !*path || (is_slash(*path) && !path[1]);
    unsigned mode = root || attributes & FILE_ATTRIBUTE_DIRECTORY ? S_IFDIR | S_IEXEC : S_IFREG;
    mode |= access_of(attributes);
    if (is_executable(path)) mode |= S_IEXEC;
    return for_everybody(mode);
}

// ---- by name ----

template <typename Char>
bool contains_any(const Char *text, const char *characters) {
    for (; *text; ++text)
        for (const char *c = characters; *c; ++c)
            if (*text == static_cast<Char>(*c)) return true;
    return false;
}

// "\\server\share", with or without a separator at the end.
template <typename Char>
bool is_share_root(const Char *path) {
    if (!is_slash(path[0]) || !is_slash(path[1])) return false;
    const Char *at = path + 2, *server = at;
    while (*at && !is_slash(*at)) ++at;
    if (at == server || !*at) return false;
    const Char *share = ++at;
    while (*at && !is_slash(*at)) ++at;
    return at != share && (!*at || !at[1]);
}

// Roots are not found by a search.
template <typename Char>
bool is_existing_root(const Char *path) {
    Char full[path_capacity];
    if (!contains_any(path, "./\\")) return false;
    DWORD length = FileApi<Char>::full_path(path, path_capacity, full);
    if (length == 0 || length >= path_capacity) return false;
    return (length == 3 || is_share_root(full)) && FileApi<Char>::drive_type(full) > 1;
}

// Whether the attributes of a path and what a search finds are the same. A search refuses a
// separator at the end and the streams of a file; dots and network shares are left to it, too.
template <typename Char>
bool is_plain(const Char *path) {
    if (is_slash(path[0]) && is_slash(path[1])) return false;
    Char last = '.';
    for (const Char *at = has_drive(path) ? path + 2 : path; *at; ++at) {
        if (*at == ':') return false;
        last = *at;
    }
    return !is_slash(last) && last != '.' && last != ' ';
}

// The data of a file: where it can be, not by a search, which may read the whole directory.
template <typename Char>
bool find_file(const Char *path, FILE_ATTRIBUTE_DATA &data) {
    if (is_plain(path) && FileApi<Char>::all_attributes(path, &data)) return true;
    FIND_DATA<Char> found;
    HANDLE search = FileApi<Char>::find_first(path, &found);
    if (search == INVALID_HANDLE_VALUE) return false;
    FindClose(search);
    data = {found.attributes, found.created,   found.accessed,
            found.written,    found.size_high, found.size_low};
    return true;
}

template <typename Char>
bool look_up(const Char *path, Status &status) {
    constexpr auto unknown = static_cast<time_t>(-1);
    FILE_ATTRIBUTE_DATA data;
    if (!find_file(path, data)) {
        status = {FILE_ATTRIBUTE_DIRECTORY, 0, unknown, unknown, unknown};
        return is_existing_root(path);
    }
    status = {data.attributes, uint64_t{data.size_high} << 32 | data.size_low,
              calendar_time_of(data.accessed), calendar_time_of(data.written),
              calendar_time_of(data.created)};
    return true;
}

template <typename Char, typename Stat>
int stat_path(const Char *path, Stat *to) {
    if (!path || !to) return fail_with(EINVAL);
    if (contains_any(path, "?*")) return fail_with(ENOENT);
    int drive;
    if (has_drive(path)) {
        if (!path[2]) return fail_with(ENOENT);
        drive = (*path | 0x20) - 'a' + 1;
    } else {
        drive = _getdrive();
    }
    Status status;
    if (!look_up(path, status)) return fail_with(ENOENT);
    fill(*to, status, mode_of(status.attributes, path), static_cast<unsigned>(drive - 1));
    return 0;
}

// ---- by descriptor ----

// Devices and pipes have no times; a pipe's size is what can be read at once.
template <typename Stat>
int stat_special(int fd, const Descriptor &descriptor, Stat *to) {
    Status status = {};
    DWORD available = 0;
    bool pipe = descriptor.flags & FD_PIPE;
    if (pipe && PeekNamedPipe(descriptor.osfhandle, nullptr, 0, nullptr, &available, nullptr))
        status.size = available;
    fill(*to, status, for_everybody((pipe ? S_IFIFO : S_IFCHR) | S_IREAD | S_IWRITE),
         static_cast<unsigned>(fd));
    return 0;
}

template <typename Stat>
int stat_file(const Descriptor &descriptor, Stat *to) {
    BY_HANDLE_FILE_INFORMATION data;
    if (!GetFileInformationByHandle(descriptor.osfhandle, &data)) return fail_with_last_error();
    Status status = {data.attributes, uint64_t{data.size_high} << 32 | data.size_low,
                     calendar_time_of(data.accessed), calendar_time_of(data.written),
                     calendar_time_of(data.created)};
    fill(*to, status, for_everybody(S_IFREG | access_of(data.attributes)), 0);
    to->st_nlink = static_cast<short>(data.link_count);
    return 0;
}

template <typename Stat>
int stat_descriptor(int fd, Stat *to) {
    if (!to) return fail_with(EINVAL);
    return with_descriptor(fd, [=](Descriptor &descriptor) {
        return descriptor.is_seekable() ? stat_file(descriptor, to)
                                        : stat_special(fd, descriptor, to);
    });
}

} // namespace

} // namespace vexrt

using namespace vexrt;

static_assert(sizeof(struct stat) == 36);

extern "C" {

int _stat(const char *path, struct stat *to) { return stat_path(path, to); }
int _wstat(const wchar_t *path, struct stat *to) { return stat_path(path, to); }
int _stat64(const char *path, struct stat64 *to) { return stat_path(path, to); }
int _wstat64(const wchar_t *path, struct stat64 *to) { return stat_path(path, to); }
int _fstat(int fd, struct stat *to) { return stat_descriptor(fd, to); }
int _fstat64(int fd, struct stat64 *to) { return stat_descriptor(fd, to); }

} // extern "C"
