// _ftw: visits a directory tree. The depth is bounded by the length that a path can have.

#include "fs/file_api.h"

#include <dirent.h>
#include <ftw.h>
#include <sys/stat.h>

namespace vexrt {

namespace {

template <typename Char>
struct Tree;
template <>
struct Tree<char> {
    using Visit = int (*)(const char *, const struct stat *, int);
    static int status(const char *path, struct stat *to) { return _stat(path, to); }
    static DIR *open(const char *path) { return _opendir(path); }
    static dirent *read(DIR *directory) { return _readdir(directory); }
    static void close(DIR *directory) { _closedir(directory); }
};
template <>
struct Tree<wchar_t> {
    using Visit = int (*)(const wchar_t *, const struct stat *, int);
    static int status(const wchar_t *path, struct stat *to) { return _wstat(path, to); }
    static _WDIR *open(const wchar_t *path) { return _wopendir(path); }
    static _wdirent *read(_WDIR *directory) { return _wreaddir(directory); }
    static void close(_WDIR *directory) { _wclosedir(directory); }
};

template <typename Char>
class Walk {
public:
    explicit Walk(typename Tree<Char>::Visit visit) : visit_(visit) {}

    int start(const Char *path) {
        size_t length = FileApi<Char>::length(path);
        if (length == 0) return fail_with(ENOENT);
        // A separator at the end, but of a root, hides a directory from the search.
        while (length > 1 && is_slash(path[length - 1]) && path[length - 2] != ':') --length;
        if (length >= path_capacity) return fail_with(ENAMETOOLONG);
        memcpy(path_, path, length * sizeof(Char));
        path_[length] = 0;
        struct stat status;
        if (Tree<Char>::status(path_, &status) != 0) return -1;
        return visit(length, status);
    }

private:
    // What `path_` of a length is, and all below it.
    int visit(size_t length, const struct stat &status) {
        if ((status.st_mode & S_IFMT) != S_IFDIR) return visit_(path_, &status, FTW_F);
        DWORD attributes = FileApi<Char>::attributes(path_);
        if (attributes != INVALID_FILE_ATTRIBUTES && attributes & FILE_ATTRIBUTE_REPARSE_POINT)
            return visit_(path_, &status, FTW_SL); // it may lead back
        auto *directory = Tree<Char>::open(path_);
        if (!directory) return visit_(path_, &status, FTW_DNR);
        int result = visit_(path_, &status, FTW_D);
        while (result == 0) {
            auto *entry = Tree<Char>::read(directory);
            if (!entry) break;
            result = visit_entry(length, entry->d_name);
        }
        path_[length] = 0;
        Tree<Char>::close(directory);
        return result;
    }

    int visit_entry(size_t length, const Char *name) {
        if (name[0] == '.' && (!name[1] || (name[1] == '.' && !name[2]))) return 0;
        size_t name_length = FileApi<Char>::length(name);
        if (!is_slash(path_[length - 1])) path_[length++] = '\\';
        if (length + name_length >= path_capacity) return fail_with(ENAMETOOLONG);
        memcpy(path_ + length, name, (name_length + 1) * sizeof(Char));
        struct stat status = {};
        if (Tree<Char>::status(path_, &status) != 0) return visit_(path_, &status, FTW_NS);
        return visit(length + name_length, status);
    }

    typename Tree<Char>::Visit visit_;
    Char path_[path_capacity];
};

template <typename Char>
int walk(const Char *path, typename Tree<Char>::Visit visit, int directories) {
    if (!path || !visit || directories < 1) return fail_with(EINVAL);
    return Walk<Char>(visit).start(path);
}

} // namespace

} // namespace vexrt

extern "C" int _ftw(const char *path, int (*visit)(const char *, const struct stat *, int), int n) {
    return vexrt::walk(path, visit, n);
}
extern "C" int _wftw(const wchar_t *path, int (*visit)(const wchar_t *, const struct stat *, int),
                     int n) {
    return vexrt::walk(path, visit, n);
}
