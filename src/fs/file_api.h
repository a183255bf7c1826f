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

template <typename Char>
struct FileApi;

template <>
struct FileApi<char> {
    static size_t length(const char *text) { return strlen(text); }
    static DWORD attributes(const char *path) { return GetFileAttributesA(path); }
    static BOOL set_attributes(const char *path, DWORD a) { return SetFileAttributesA(path, a); }
    static HANDLE find_first(const char *path, FIND_DATA<char> *data) {
        return FindFirstFileA(path, data);
    }
    static BOOL find_next(HANDLE search, FIND_DATA<char> *data) {
        return FindNextFileA(search, data);
    }
    static DWORD full_path(const char *path, DWORD size, char *to) {
        return GetFullPathNameA(path, size, to, nullptr);
    }
    static UINT drive_type(const char *root) { return GetDriveTypeA(root); }
    static DWORD current_directory(DWORD size, char *to) { return GetCurrentDirectoryA(size, to); }
    static BOOL set_current_directory(const char *path) { return SetCurrentDirectoryA(path); }
    static BOOL create_directory(const char *path) { return CreateDirectoryA(path, nullptr); }
    static BOOL remove_directory(const char *path) { return RemoveDirectoryA(path); }
    static BOOL delete_file(const char *path) { return DeleteFileA(path); }
    static BOOL move_file(const char *from, const char *to) {
        return MoveFileExA(from, to, MOVEFILE_COPY_ALLOWED);
    }
    static BOOLEAN create_symbolic_link(const char *link, const char *target, DWORD flags) {
        return CreateSymbolicLinkA(link, target, flags);
    }
    static HANDLE open_for_attributes(const char *path) {
        return CreateFileA(path, FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                           OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    }
    static BOOL set_variable(const char *name, const char *value) {
        return SetEnvironmentVariableA(name, value);
    }
};

template <>
struct FileApi<wchar_t> {
    static size_t length(const wchar_t *text) { return wcslen(text); }
    static DWORD attributes(const wchar_t *path) { return GetFileAttributesW(path); }
    static BOOL set_attributes(const wchar_t *path, DWORD a) { return SetFileAttributesW(path, a); }
    static HANDLE find_first(const wchar_t *path, FIND_DATA<wchar_t> *data) {
        return FindFirstFileW(path, data);
    }
    static BOOL find_next(HANDLE search, FIND_DATA<wchar_t> *data) {
        return FindNextFileW(search, data);
    }
    static DWORD full_path(const wchar_t *path, DWORD size, wchar_t *to) {
        return GetFullPathNameW(path, size, to, nullptr);
    }
    static UINT drive_type(const wchar_t *root) { return GetDriveTypeW(root); }
    static DWORD current_directory(DWORD size, wchar_t *to) {
        return GetCurrentDirectoryW(size, to);
    }
    static BOOL set_current_directory(const wchar_t *path) { return SetCurrentDirectoryW(path); }
    static BOOL create_directory(const wchar_t *path) { return CreateDirectoryW(path, nullptr); }
    static BOOL remove_directory(const wchar_t *path) { return RemoveDirectoryW(path); }
    static BOOL delete_file(const wchar_t *path) { return DeleteFileW(path); }
    static BOOL move_file(const wchar_t *from, const wchar_t *to) {
        return MoveFileExW(from, to, MOVEFILE_COPY_ALLOWED);
    }
    static BOOLEAN create_symbolic_link(const wchar_t *link, const wchar_t *target, DWORD flags) {
        return CreateSymbolicLinkW(link, target, flags);
    }
    static HANDLE open_for_attributes(const wchar_t *path) {
        return CreateFileW(path, FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                           OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    }
    static BOOL set_variable(const wchar_t *name, const wchar_t *value) {
        return SetEnvironmentVariableW(name, value);
    }
};

// -1 with errno from the system's last error.
inline int fail_by_system() {
    map_os_error(GetLastError());
    return -1;
}

// 0, or what fail_by_system() says.
inline int result_by_system(BOOL done) { return done ? 0 : fail_by_system(); }

template <typename Char>
bool is_slash(Char c) {
    return c == '/' || c == '\\';
}

template <typename Char>
bool has_drive(const Char *path) {
    return static_cast<unsigned>((*path | 0x20) - 'a') < 26 && path[1] == ':';
}

} // namespace vexrt
