// Path names: absolute, taken apart, put together, and searched for along a list of directories.

#include "fs/file_api.h"

#include <direct.h>
#include <io.h>
#include <limits.h>
#include <stdlib.h>

namespace vexrt {

namespace {

char *current_directory(char *buffer, int size) { return _getcwd(buffer, size); }
wchar_t *current_directory(wchar_t *buffer, int size) { return _wgetcwd(buffer, size); }
char *variable(const char *name) { return getenv(name); }
wchar_t *variable(const wchar_t *name) { return _wgetenv(name); }
bool exists(const char *path) { return _access(path, 0) == 0; }
bool exists(const wchar_t *path) { return _waccess(path, 0) == 0; }

template <typename Char>
Char *full_path(Char *buffer, const Char *path, size_t size) {
    if (!path || !*path) return current_directory(buffer, static_cast<int>(size));
    Char *to = buffer;
    if (!buffer) {
        DWORD needed = FileApi<Char>::full_path(path, 0, nullptr);
        if (needed == 0) {
            map_os_error(GetLastError());
            return nullptr;
        }
        if (size < needed + 1) size = needed + 1;
        if (size > INT_MAX) {
            set_errno(ENOMEM);
            return nullptr;
        }
        to = static_cast<Char *>(malloc(size * sizeof(Char)));
        if (!to) return nullptr;
    }
    DWORD length = FileApi<Char>::full_path(path, static_cast<DWORD>(size), to);
    if (length != 0 && length < size) return to;
    if (length == 0)
        map_os_error(GetLastError());
    else
        set_errno(ERANGE);
    if (!buffer) free(to);
    return nullptr;
}

// ---- taking apart ----

template <typename Char>
void copy_part(Char *to, const Char *from, const Char *end) {
    if (!to) return;
    auto length = static_cast<size_t>(end - from);
    if (length >= path_capacity) length = path_capacity - 1;
    memcpy(to, from, length * sizeof(Char));
    to[length] = 0;
}

template <typename Char>
void split_path(const Char *path, Char *drive, Char *directory, Char *name, Char *extension) {
    constexpr Char none = 0;
    if (!path) {
        set_errno(EINVAL);
        path = &none;
    }
    const Char *rest = path[0] && path[1] == ':' ? path + 2 : path;
    const Char *base = rest, *dot = nullptr, *end = rest;
    for (; *end; ++end) {
        if (is_slash(*end)) base = end + 1;
        if (*end == '.') dot = end;
    }
    if (!dot || dot < base) dot = end;
    copy_part(drive, path, rest);
    copy_part(directory, rest, base);
    copy_part(name, base, dot);
    copy_part(extension, dot, end);
}

// ---- putting together ----

// Text that stops growing at its limit.
template <typename Char>
class PathBuilder {
public:
    explicit PathBuilder(Char *to) : begin_(to), at_(to) {}
    void add(Char c) {
        if (at_ - begin_ < limit) *at_++ = c;
    }
    void add(const Char *text) {
        while (*text) add(*text++);
    }
    void terminate() { *at_ = 0; }

private:
    static constexpr ptrdiff_t limit = 258;
    Char *begin_, *at_;
};

template <typename Char>
bool is_given(const Char *part) {
    return part && *part;
}

template <typename Char>
void make_path(Char *path, const Char *drive, const Char *directory, const Char *name,
               const Char *extension) {
    if (!path) return set_errno(EINVAL);
    PathBuilder<Char> to(path);
    if (is_given(drive)) {
        to.add(*drive);
        to.add(':');
    }
    if (is_given(directory)) {
        to.add(directory);
        if (!is_slash(directory[FileApi<Char>::length(directory) - 1])) to.add('\\');
    }
    if (name) to.add(name);
    if (is_given(extension)) {
        if (*extension != '.') to.add('.');
        to.add(extension);
    }
    to.terminate();
}

// ---- searching ----

// The absolute path of directory + file, if that exists and fits.
template <typename Char>
bool find_in(const Char *directory, size_t length, const Char *file, Char *to) {
    size_t file_length = FileApi<Char>::length(file);
    Char path[path_capacity];
    if (length >= path_capacity) return false;
    memcpy(path, directory, length * sizeof(Char));
    if (length && !is_slash(path[length - 1])) path[length++] = '\\';
    if (length + file_length >= path_capacity) return false;
    memcpy(path + length, file, (file_length + 1) * sizeof(Char));
    return exists(path) && full_path(to, path, path_capacity);
}

template <typename Char>
void search_path(const Char *file, const Char *name, Char *to) {
    if (!to) return;
    *to = 0;
    if (!is_given(file)) {
        set_errno(ENOENT);
        return;
    }
    if (find_in<Char>(file, 0, file, to)) return;
    const Char *list = name ? variable(name) : nullptr;
    while (list && *list) {
        const Char *end = list;
        while (*end && *end != ';') ++end;
        bool quoted = end - list >= 2 && *list == '"' && end[-1] == '"';
        const Char *begin = list + quoted;
        if (end != list && find_in(begin, static_cast<size_t>(end - begin - quoted), file, to))
            return;
        list = *end ? end + 1 : end;
    }
    *to = 0;
    set_errno(ENOENT);
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

char *_fullpath(char *buffer, const char *path, size_t size) {
    return full_path(buffer, path, size);
}
wchar_t *_wfullpath(wchar_t *buffer, const wchar_t *path, size_t size) {
    return full_path(buffer, path, size);
}

void _splitpath(const char *path, char *drive, char *directory, char *name, char *extension) {
    split_path(path, drive, directory, name, extension);
}
void _wsplitpath(const wchar_t *path, wchar_t *drive, wchar_t *directory, wchar_t *name,
                 wchar_t *extension) {
    split_path(path, drive, directory, name, extension);
}

void _makepath(char *path, const char *drive, const char *directory, const char *name,
               const char *extension) {
    make_path(path, drive, directory, name, extension);
}
void _wmakepath(wchar_t *path, const wchar_t *drive, const wchar_t *directory, const wchar_t *name,
                const wchar_t *extension) {
    make_path(path, drive, directory, name, extension);
}

void _searchenv(const char *file, const char *name, char *to) { search_path(file, name, to); }
void _wsearchenv(const wchar_t *file, const wchar_t *name, wchar_t *to) {
    search_path(file, name, to);
}

} // extern "C"
