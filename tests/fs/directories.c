/* Directory streams, searches by pattern, tree walks, over a directory with thousands of entries. */
#include "check.h"

#include <direct.h>
#include <dirent.h>
#include <ftw.h>
#include <io.h>
#include <stdlib.h>

enum { FILES = 3000 };

static void make_tree(void)
{
    char name[60];
    _mkdir("fs-many");
    for (int i = 0; i < FILES; ++i) {
        sprintf(name, "fs-many\\file%04d.%s", i, i % 10 ? "txt" : "dat");
        fclose(fopen(name, "wb"));
    }
    _mkdir("fs-many\\sub");
    _wmkdir(L"fs-many\\sub\\\x20AC");
    fclose(fopen("fs-many\\sub\\inner.txt", "wb"));
}

static void test_streams(void)
{
    static char seen[FILES];
    char path[300];
    memset(path, 'x', sizeof path);
    path[255] = '\0';
    DIR *dir = _opendir("fs-many");
    CHECK(dir != NULL);
    for (int pass = 0; pass < 2; ++pass) {
        int files = 0, others = 0, wrong = 0;
        memset(seen, 0, sizeof seen);
        errno = 0;
        for (struct dirent *entry; (entry = _readdir(dir)) != NULL;) {
            int number;
            if (sscanf(entry->d_name, "file%d", &number) == 1) {
                wrong += seen[number]++ || entry->d_type != DT_REG;
                ++files;
            } else {
                wrong += entry->d_type != DT_DIR || entry->d_ino;
                ++others;
            }
        }
        CHECK_INT(errno, EBADF); /* the end */
        CHECK(!_readdir(dir));
        CHECK_INT(files, FILES);
        CHECK_INT(others, 3); /* ".", ".." and "sub" */
        CHECK_INT(wrong, 0);
        _rewinddir(dir);
    }
    CHECK_INT(_closedir(dir), 0);
    _WDIR *wide = _wopendir(L"fs-many\\sub/");
    int found = 0;
    for (struct _wdirent *entry; (entry = _wreaddir(wide)) != NULL;) found += !wcscmp(entry->d_name, L"\x20AC");
    CHECK_INT(found, 1);
    _wrewinddir(wide);
    CHECK(_wreaddir(wide) != NULL);
    CHECK_INT(_wclosedir(wide), 0);
    CHECK_ERRNO(_opendir(path) == NULL, 1, ENOENT); /* 255 characters, and no such directory */
    path[255] = 'x';
    path[256] = '\0';
    CHECK_ERRNO(_opendir(path) == NULL, 1, ENOENT);
    CHECK_ERRNO(_opendir("") == NULL, 1, ENOENT);
    CHECK_ERRNO(_opendir(NULL) == NULL, 1, ENOENT);
    CHECK_ERRNO(_opendir("fs-many\\file0001.txt") == NULL, 1, ENOENT);
    CHECK_ERRNO(_closedir(NULL), -1, EBADF);
    CHECK_ERRNO(_readdir(NULL) == NULL, 1, EBADF);
    _rewinddir(NULL);
}

static void test_searches(void)
{
    struct _finddata_t data;
    struct _wfinddata_t wide;
    intptr_t search = _findfirst("fs-many\\*.dat", &data);
    int count = 0;
    do {
        count += strstr(data.name, ".dat") != NULL && data.size == 0 && !(data.attrib & _A_SUBDIR);
    } while (_findnext(search, &data) == 0);
    CHECK_INT(errno, ENOENT);
    CHECK_INT(count, FILES / 10);
    CHECK_INT(_findclose(search), 0);
    search = _wfindfirst(L"fs-many\\su?", &wide);
    CHECK(search != -1 && wide.attrib & _A_SUBDIR);
    CHECK_WSTR(wide.name, L"sub");
    CHECK_INT(_wfindnext(search, &wide), -1);
    CHECK_INT(_findclose(search), 0);
    CHECK_ERRNO(_findfirst("fs-many\\none*", &data), -1, ENOENT);
    CHECK_ERRNO(_findfirst(NULL, &data), -1, EINVAL);
    CHECK_ERRNO(_findnext(-1, &data), -1, EINVAL);
    CHECK_ERRNO(_findclose(-1), -1, EINVAL);
}

static int files, directories, stop_at = -1;
static int visit(const char *path, const struct stat *status, int type)
{
    files += type == FTW_F && S_ISREG(status->st_mode);
    directories += type == FTW_D && S_ISDIR(status->st_mode);
    return files == stop_at ? 77 : 0;
}

static int remove_files(const wchar_t *path, const struct stat *status, int type)
{
    return type == FTW_F ? _wunlink(path) : 0;
}

static void test_walks(void)
{
    CHECK_INT(_ftw("fs-many/\\", visit, 5), 0);
    CHECK_INT(files, FILES + 1);
    CHECK_INT(directories, 2 + 1);
    files = 0;
    stop_at = 10;
    CHECK_INT(_ftw("fs-many", visit, 1), 77);
    CHECK_INT(files, 10);
    CHECK_ERRNO(_ftw("fs-none", visit, 1), -1, ENOENT);
    CHECK_ERRNO(_ftw("fs-many", visit, 0), -1, EINVAL);
    CHECK_ERRNO(_ftw(NULL, visit, 1), -1, EINVAL);
    CHECK_INT(_wftw(L"fs-many", remove_files, 1), 0);
    CHECK_INT(_wrmdir(L"fs-many\\sub\\\x20AC"), 0);
    CHECK_INT(_rmdir("fs-many\\sub"), 0);
    CHECK_INT(_rmdir("fs-many"), 0);
}

int main(void)
{
    make_tree();
    test_streams();
    test_searches();
    test_walks();
    return check_done();
}
