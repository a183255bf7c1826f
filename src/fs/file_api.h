// The operating system's file functions by character type: what lets one template serve the narrow
// and the wide form of a function.
#pragma once

#include "core/errno.h"
#include "platform/kernel32.h"

#include <stddef.h>
#include <string.h>
#include <wchar.h>

namespace vexrt {

constexpr size_t path_capacity = 260; // of names the system takes, terminator included

inline size_t text_length(const char *text) { return strlen(text); }
inline size_t text_length(const wchar_t *text) { return wcslen(text); }

template <typename Char>
struct FileApi;

// The functions that end in `Suffix` in the system.
#define VEXRT_FILE_API(Char, Suffix)                                                               \
    template <>                                                                                    \
    struct FileApi<Char> {                                                                         \
        using Data = FIND_DATA<Char>;                                                              \
        static size_t length(const Char *text) { return text_length(text); }                       \
        static DWORD attributes(const Char *path) { return GetFileAttributes##Suffix(path); }      \
        static BOOL all_attributes(const Char *path, FILE_ATTRIBUTE_DATA *data) {                  \
            return GetFileAttributesEx##Suffix(path, 0, data);                                     \
        }                                                                                          \
        static BOOL set_attributes(const Char *path, DWORD attributes) {                           \
            return SetFileAttributes##Suffix(path, attributes);                                    \
        }                                                                                          \
        static HANDLE find_first(const Char *path, Data *data) {                                   \
            return FindFirstFile##Suffix(path, data);                                              \
        }                                                                                          \
        static BOOL find_next(HANDLE search, Data *data) {                                         \
            return FindNextFile##Suffix(search, data);                                             \
        }                                                                                          \
        static DWORD full_path(const Char *path, DWORD size, Char *to) {                           \
            return GetFullPathName##Suffix(path, size, to, nullptr);                               \
        }                                                                                          \
        static UINT drive_type(const Char *root) { return GetDriveType##Suffix(root); }            \
        static DWORD current_directory(DWORD size, Char *to) {                                     \
            return GetCurrentDirectory##Suffix(size, to);                                          \
        }                                                                                          \
        static BOOL set_current_directory(const Char *path) {                                      \
            return SetCurrentDirectory##Suffix(path);                                              \
        }                                                                                          \
        static BOOL create_directory(const Char *path) {                                           \
            return CreateDirectory##Suffix(path, nullptr);                                         \
        }                                                                                          \
        static BOOL remove_directory(const Char *path) { return RemoveDirectory##Suffix(path); }   \
        static BOOL delete_file(const Char *path) { return DeleteFile##Suffix(path); }             \
        static BOOL move_file(const Char *from, const Char *to) {                                  \
            return MoveFileEx##Suffix(from, to, MOVEFILE_COPY_ALLOWED);                            \
        }                                                                                          \
        static BOOLEAN create_symbolic_link(const Char *link, const Char *target, DWORD flags) {   \
            return CreateSymbolicLink##Suffix(link, target, flags);                                \
        }                                                                                          \
        static HANDLE open_for_attributes(const Char *path) {                                      \
            return CreateFile##Suffix(path, FILE_WRITE_ATTRIBUTES,                                 \
                                      FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,  \
                                      FILE_FLAG_BACKUP_SEMANTICS, nullptr);                        \
        }                                                                                          \
    }
VEXRT_FILE_API(char, A);
VEXRT_FILE_API(wchar_t, W);
#undef VEXRT_FILE_API

// 0, or what fail_with_last_error() says.
inline int result_by_system(BOOL done) { return done ? 0 : fail_with_last_error(); }

template <typename Char>
bool is_slash(Char c) {
    return c == '/' || c == '\\';
}

template <typename Char>
bool has_drive(const Char *path) {
    return static_cast<unsigned>((*path | 0x20) - 'a') < 26 && path[1] == ':';
}

} // namespace vexrt
