// Files and directories by name: removing, renaming, permissions, links, the current directory.

#include "fs/file_api.h"

#include <direct.h>
#include <io.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/stat.h>

namespace vexrt {

namespace {

// EINVAL for none, ENOENT for an empty one, on which systems do not agree.
template <typename Char>
bool is_name(const Char *path) {
    if (path && *path) return true;
    set_errno(path ? ENOENT : EINVAL);
    return false;
}

template <typename Char>
int unlink_file(const Char *path) {
    return is_name(path) ? result_by_system(FileApi<Char>::delete_file(path)) : -1;
}

template <typename Char>
int rename_file(const Char *from, const Char *to) {
    return is_name(from) && is_name(to) ? result_by_system(FileApi<Char>::move_file(from, to)) : -1;
}

template <typename Char>
int change_mode(const Char *path, int mode) {
    if (!is_name(path)) return -1;
    DWORD attributes = FileApi<Char>::attributes(path);
    if (attributes == INVALID_FILE_ATTRIBUTES) return fail_with_last_error();
    if (mode & S_IWRITE)
        attributes &= ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY);
    else
        attributes |= FILE_ATTRIBUTE_READONLY;
    return result_by_system(FileApi<Char>::set_attributes(path, attributes));
}

template <typename Char>
size_t directory_length(const Char *path) {
    size_t length = FileApi<Char>::length(path);
    while (length && !is_slash(path[length - 1]) && path[length - 1] != ':') --length;
    return length;
}

// The system must know whether the link is to a directory, and takes only backslashes in a target,
// which is relative to the link's directory. Some systems say that they have made a link and have
// not.
template <typename Char>
int make_link(const Char *target, const Char *link) {
    constexpr DWORD unprivileged = 2, ERROR_PRIVILEGE_NOT_HELD = 1314;
    using Api = FileApi<Char>;
    if (!is_name(target) || !is_name(link)) return -1;
    if (Api::attributes(link) != INVALID_FILE_ATTRIBUTES) return fail_with(EEXIST);
    Char path[2 * path_capacity];
    bool relative = !is_slash(*target) && !has_drive(target);
    size_t directory = relative ? directory_length(link) : 0, length = Api::length(target);
    if (directory >= path_capacity || length >= path_capacity) return fail_with(ENAMETOOLONG);
    memcpy(path, link, directory * sizeof(Char));
    for (size_t i = 0; i <= length; ++i)
        path[directory + i] = target[i] == '/' ? static_cast<Char>('\\') : target[i];
    DWORD attributes = Api::attributes(path);
    bool to_directory =
        attributes != INVALID_FILE_ATTRIBUTES && attributes & FILE_ATTRIBUTE_DIRECTORY;
    if (!Api::create_symbolic_link(link, path + directory, unprivileged | to_directory))
        return GetLastError() == ERROR_PRIVILEGE_NOT_HELD ? fail_with(EPERM)
                                                          : fail_with_last_error();
    return Api::attributes(link) == INVALID_FILE_ATTRIBUTES ? fail_with(ENOSYS) : 0;
}

// ---- directories ----

template <typename Char>
int make_directory(const Char *path) {
    return is_name(path) ? result_by_system(FileApi<Char>::create_directory(path)) : -1;
}

template <typename Char>
int remove_directory(const Char *path) {
    return is_name(path) ? result_by_system(FileApi<Char>::remove_directory(path)) : -1;
}

// The directory of a drive is kept in a variable "=X:", where the system and children look for it.
void note_directory_of_drive() {
    wchar_t directory[path_capacity];
    DWORD length = GetCurrentDirectoryW(path_capacity, directory);
    if (length == 0 || length >= path_capacity || !has_drive(directory)) return;
    const wchar_t variable[] = {'=', directory[0], ':', 0};
    SetEnvironmentVariableW(variable, directory);
}

template <typename Char>
int change_directory(const Char *path) {
    if (!is_name(path)) return -1;
    if (!FileApi<Char>::set_current_directory(path)) return fail_with_last_error();
    note_directory_of_drive();
    return 0;
}

// A path of the system into the caller's buffer, or into a block of at least `size` characters.
template <typename Char, typename Query>
Char *path_result(Char *buffer, int size, Query query) {
    if (buffer && size <= 0) {
        set_errno(EINVAL);
        return nullptr;
    }
    DWORD needed = query(0, nullptr);
    if (needed == 0) {
        map_os_error(GetLastError());
        return nullptr;
    }
    auto room = static_cast<DWORD>(size > 0 ? size : 0);
    if (buffer && needed > room) {
        set_errno(ERANGE);
        return nullptr;
    }
    if (room < needed) room = needed;
    auto *to = buffer ? buffer : static_cast<Char *>(malloc(room * sizeof(Char)));
    if (!to) return nullptr;
    if (query(room, to) < room) return to;
    if (!buffer) free(to);
    set_errno(ERANGE); // the directory has changed in between
    return nullptr;
}

template <typename Char>
Char *get_directory(Char *buffer, int size) {
    return path_result(buffer, size, [](DWORD room, Char *to) {
        return FileApi<Char>::current_directory(room, to);
    });
}

template <typename Char>
Char *get_drive_directory(int drive, Char *buffer, int size) {
    if (drive == 0) return get_directory(buffer, size);
    if (drive < 0 || drive > 26 || !(GetLogicalDrives() >> (drive - 1) & 1)) {
        set_errno(EACCES);
        return nullptr;
    }
    const Char path[] = {static_cast<Char>('A' + drive - 1), ':', '.', 0};
    return path_result(buffer, size, [&path](DWORD room, Char *to) {
        return FileApi<Char>::full_path(path, room, to);
    });
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

int _unlink(const char *path) { return unlink_file(path); }
int _wunlink(const wchar_t *path) { return unlink_file(path); }
int remove(const char *path) { return unlink_file(path); }
int _wremove(const wchar_t *path) { return unlink_file(path); }
int rename(const char *from, const char *to) { return rename_file(from, to); }
int _wrename(const wchar_t *from, const wchar_t *to) { return rename_file(from, to); }
int _chmod(const char *path, int mode) { return change_mode(path, mode); }
int _wchmod(const wchar_t *path, int mode) { return change_mode(path, mode); }
int _symlink(const char *target, const char *link) { return make_link(target, link); }
int _wsymlink(const wchar_t *target, const wchar_t *link) { return make_link(target, link); }

int _mkdir(const char *path) { return make_directory(path); }
int _wmkdir(const wchar_t *path) { return make_directory(path); }
int _rmdir(const char *path) { return remove_directory(path); }
int _wrmdir(const wchar_t *path) { return remove_directory(path); }
int _chdir(const char *path) { return change_directory(path); }
int _wchdir(const wchar_t *path) { return change_directory(path); }
char *_getcwd(char *buffer, int size) { return get_directory(buffer, size); }
wchar_t *_wgetcwd(wchar_t *buffer, int size) { return get_directory(buffer, size); }
char *_getdcwd(int drive, char *buffer, int size) {
    return get_drive_directory(drive, buffer, size);
}
wchar_t *_wgetdcwd(int drive, wchar_t *buffer, int size) {
    return get_drive_directory(drive, buffer, size);
}

int _getdrive() {
    wchar_t directory[path_capacity];
    DWORD length = GetCurrentDirectoryW(path_capacity, directory);
    bool known = length > 0 && length < path_capacity && has_drive(directory);
    return known ? (*directory | 0x20) - 'a' + 1 : 0;
}

int _chdrive(int drive) {
    if (drive < 1 || drive > 26) return fail_with(EACCES);
    const wchar_t root[] = {static_cast<wchar_t>('A' + drive - 1), ':', 0};
    return SetCurrentDirectoryW(root) ? 0 : fail_with(EACCES);
}

} // extern "C"
