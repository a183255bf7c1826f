// Directory streams: a search of the system, one entry ahead.

#include "fs/file_api.h"
#include "heap/heap.h"

#include <dirent.h>

namespace vexrt {

namespace {

constexpr size_t directory_capacity = 256;

template <typename Char>
struct Names;
template <>
struct Names<char> {
    using Stream = DIR;
    using Entry = dirent;
};
template <>
struct Names<wchar_t> {
    using Stream = _WDIR;
    using Entry = _wdirent;
};

template <typename Char>
struct Directory {
    HANDLE search; // invalid once it is exhausted
    FIND_DATA<Char> next;
    Char path[directory_capacity];
    typename Names<Char>::Entry entry;
};

template <typename Char>
void start_search(Directory<Char> &directory) {
    Char pattern[directory_capacity + 5];
    size_t length = FileApi<Char>::length(directory.path);
    memcpy(pattern, directory.path, length * sizeof(Char));
    if (!is_slash(pattern[length - 1])) pattern[length++] = '\\';
    for (const char *c = "*.*"; *c; ++c) pattern[length++] = static_cast<Char>(*c);
    pattern[length] = 0;
    directory.search = FileApi<Char>::find_first(pattern, &directory.next);
}

template <typename Char>
void end_search(Directory<Char> &directory) {
    if (directory.search != INVALID_HANDLE_VALUE) FindClose(directory.search);
    directory.search = INVALID_HANDLE_VALUE;
}

template <typename Char>
Directory<Char> *open_directory(const Char *path) {
    size_t length = path ? FileApi<Char>::length(path) : 0;
    if (length == 0 || length >= directory_capacity) {
        set_errno(ENOENT);
        return nullptr;
    }
    DWORD attributes = FileApi<Char>::attributes(path);
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        map_os_error(GetLastError());
        return nullptr;
    }
    if (!(attributes & FILE_ATTRIBUTE_DIRECTORY)) {
        set_errno(ENOENT);
        return nullptr;
    }
    auto *directory = static_cast<Directory<Char> *>(heap_allocate(sizeof(Directory<Char>)));
    if (!directory) {
        set_errno(ENOMEM);
        return nullptr;
    }
    memcpy(directory->path, path, (length + 1) * sizeof(Char));
    start_search(*directory);
    if (directory->search != INVALID_HANDLE_VALUE) return directory;
    map_os_error(GetLastError());
    heap_release(directory);
    return nullptr;
}

unsigned short type_of(DWORD attributes) {
    return attributes & FILE_ATTRIBUTE_DIRECTORY       ? DT_DIR
           : attributes & FILE_ATTRIBUTE_REPARSE_POINT ? DT_LNK
                                                       : DT_REG;
}

// The end of the directory is reported by EBADF, as a stream that is none is.
template <typename Char>
typename Names<Char>::Entry *read_directory(Directory<Char> *directory) {
    if (!directory || directory->search == INVALID_HANDLE_VALUE) {
        set_errno(EBADF);
        return nullptr;
    }
    auto &entry = directory->entry;
    entry.d_ino = 0;
    entry.d_type = type_of(directory->next.attributes);
    memcpy(entry.d_name, directory->next.name, sizeof entry.d_name);
    if (!FileApi<Char>::find_next(directory->search, &directory->next)) end_search(*directory);
    return &entry;
}

template <typename Char>
void rewind_directory(Directory<Char> *directory) {
    if (!directory) return;
    end_search(*directory);
    start_search(*directory);
}

template <typename Char>
int close_directory(Directory<Char> *directory) {
    if (!directory) return fail_with(EBADF);
    end_search(*directory);
    heap_release(directory);
    return 0;
}

template <typename Char>
Directory<Char> *behind(typename Names<Char>::Stream *stream) {
    return reinterpret_cast<Directory<Char> *>(stream);
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

DIR *_opendir(const char *path) { return reinterpret_cast<DIR *>(open_directory(path)); }
_WDIR *_wopendir(const wchar_t *path) { return reinterpret_cast<_WDIR *>(open_directory(path)); }
dirent *_readdir(DIR *dir) { return read_directory(behind<char>(dir)); }
_wdirent *_wreaddir(_WDIR *dir) { return read_directory(behind<wchar_t>(dir)); }
void _rewinddir(DIR *dir) { rewind_directory(behind<char>(dir)); }
void _wrewinddir(_WDIR *dir) { rewind_directory(behind<wchar_t>(dir)); }
int _closedir(DIR *dir) { return close_directory(behind<char>(dir)); }
int _wclosedir(_WDIR *dir) { return close_directory(behind<wchar_t>(dir)); }

} // extern "C"
