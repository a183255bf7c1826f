/* Path names and temporary names. */
#include "check.h"

#include <direct.h>
#include <io.h>
#include <stdlib.h>

static void test_split_and_make(void)
{
    static const struct {
        const char *path, *drive, *dir, *name, *extension, *made; /* null: the same path */
    } cases[] = {
        {"c:\\dir\\file.txt", "c:", "\\dir\\", "file", ".txt", NULL},
        {"file", "", "", "file", "", NULL},
        {"dir.d/file", "", "dir.d/", "file", "", NULL},
        {"a.b.c", "", "", "a.b", ".c", NULL},
        {".profile", "", "", "", ".profile", NULL},
        {"dir/", "", "dir/", "", "", NULL},
        {"x:", "x:", "", "", "", NULL},
        {"x:file.", "x:", "", "file", ".", NULL},
        {"\\\\server\\share\\f.e", "", "\\\\server\\share\\", "f", ".e", NULL},
        {"", "", "", "", "", NULL},
        {"1:a", "1:", "", "a", "", NULL},
    };
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        char drive[260], dir[260], name[260], extension[260], path[260];
        check_label = cases[i].path;
        _splitpath(cases[i].path, drive, dir, name, extension);
        CHECK_STR(drive, cases[i].drive);
        CHECK_STR(dir, cases[i].dir);
        CHECK_STR(name, cases[i].name);
        CHECK_STR(extension, cases[i].extension);
        _makepath(path, drive, dir, name, extension);
        CHECK_STR(path, cases[i].path);
        _splitpath(cases[i].path, NULL, NULL, NULL, NULL);
    }
    check_label = "";
    char path[300], part[301];
    _makepath(path, "cd", "dir", "name", "ext");
    CHECK_STR(path, "c:dir\\name.ext");
    _makepath(path, NULL, NULL, NULL, NULL);
    CHECK_STR(path, "");
    memset(part, 'x', 300);
    part[300] = '\0';
    memset(path, '#', sizeof path);
    _makepath(path, "c", part, part, ".e");
    CHECK(strlen(path) == 258 && path[259] == '#');
    char name[261] = "left";
    CHECK_ERRNO((_splitpath(NULL, NULL, NULL, name, NULL), *name), 0, EINVAL);
    CHECK_ERRNO((_makepath(NULL, "c", "d", "n", "e"), 0), 0, EINVAL);
    name[260] = '#';
    _splitpath(part, NULL, NULL, name, NULL);
    CHECK(strlen(name) == 259 && name[260] == '#');
    wchar_t wide[260], wide_name[260], wide_extension[260];
    _wsplitpath(L"d:\\\x20AC.x", NULL, NULL, wide_name, wide_extension);
    _wmakepath(wide, L"e", L"/y", wide_name, wide_extension);
    CHECK_WSTR(wide, L"e:/y\\\x20AC.x");
}

static void test_full(void)
{
    char here[300], due[400], buffer[300], *made;
    wchar_t wide[300];
    _getcwd(here, 300);
    sprintf(due, "%s\\file", here);
    CHECK_STR(_fullpath(buffer, "file", 300), due);
    CHECK_STR(_fullpath(buffer, "x\\..\\.\\file", 300), due);
    CHECK_STR(_fullpath(buffer, "c:\\a/b", 300), "c:\\a\\b");
    made = _fullpath(NULL, "file", 0);
    CHECK_STR(made, due);
    free(made);
    CHECK_STR(_fullpath(buffer, "", 300), here);
    CHECK_STR(_fullpath(buffer, NULL, 300), here);
    CHECK_ERRNO(_fullpath(buffer, "file", 5) == NULL, 1, ERANGE);
    CHECK_ERRNO(_fullpath(buffer, "c:\\a", 4) == NULL, 1, ERANGE);
    CHECK_STR(_fullpath(buffer, "c:\\a", 5), "c:\\a");
    CHECK_ERRNO(_wfullpath(NULL, L"file", 0x80000001) == NULL, 1, ENOMEM); /* of 2 bytes, modulo 2^32 */
    CHECK_WSTR(_wfullpath(wide, L"c:\\\x20AC\\.", 300), L"c:\\\x20AC");
}

static void test_search(void)
{
    char found[260], due[260];
    _mkdir("fs-path");
    fclose(fopen("fs-path\\wanted.txt", "w"));
    _putenv("FSPATH=c:\\none;;\"fs-path\"");
    _searchenv("wanted.txt", "FSPATH", found);
    CHECK_STR(found, _fullpath(due, "fs-path\\wanted.txt", 260));
    CHECK_ERRNO((_searchenv("unwanted.txt", "FSPATH", found), *found), 0, ENOENT);
    CHECK_ERRNO((_searchenv("wanted.txt", "NOSUCH", found), *found), 0, ENOENT);
    _searchenv("fs-path\\wanted.txt", "NOSUCH", found); /* as it stands */
    CHECK_STR(found, due);
    wchar_t wide[260];
    _wputenv(L"FSPATH=fs-path\\");
    _wsearchenv(L"wanted.txt", L"FSPATH", wide);
    CHECK(wcsstr(wide, L"\\fs-path\\wanted.txt") != NULL);
    remove("fs-path\\wanted.txt");
    _rmdir("fs-path");
}

static int counted;
static void count(const char *message, void *object, errno_t code) { counted += code; }

static void test_temporary(void)
{
    char own[300], first[300], directory[400];
    char *shared = tmpnam(NULL);
    strcpy(first, shared);
    CHECK(tmpnam(NULL) == shared && strcmp(shared, first));
    CHECK(tmpnam(own) == own);
    sprintf(directory, "%s\\ctm", getenv("TEMP"));
    CHECK_MEM(own, directory, strlen(directory));
    const char *digits = own + strlen(directory);
    CHECK_INT(strspn(digits, "01234567"), 5);
    CHECK_STR(digits + 5, ".tmp");
    CHECK_INT(strtol(digits, NULL, 8), (strtol(first + strlen(directory), NULL, 8) + 2) & 0x7FFF);
    wchar_t wide[300];
    CHECK(_wtmpnam(wide) == wide && wcsstr(wide, L"\\ctm"));
    memset(directory, 'x', 252);
    memcpy(directory, "TEMP=", 5);
    strcpy(directory + 252, "");
    char *saved = strcpy(malloc(strlen(getenv("TEMP")) + 6), "TEMP=");
    strcat(saved, getenv("TEMP"));
    _putenv(directory); /* 247 characters: too long */
    CHECK_INT(strlen(tmpnam(own)), 13);
    CHECK_MEM(own, "\\ctm", 4);
    directory[251] = '\0';
    _putenv(directory);
    CHECK_INT(strlen(tmpnam(own)), 246 + 13);
    _putenv("TEMP=");
    CHECK_INT(strlen(tmpnam(own)), 13);
    set_constraint_handler_s(count);
    CHECK_INT(tmpnam_s(own, 14), 0);
    CHECK_INT(tmpnam_s(own, 13), ERANGE);
    CHECK_STR(own, "");
    CHECK_INT(tmpnam_s(NULL, 13), EINVAL);
    CHECK_INT(_wtmpnam_s(wide, 0), EINVAL);
    CHECK_INT(tmpfile_s(NULL), EINVAL);
    CHECK_INT(counted, ERANGE + 3 * EINVAL);
    set_constraint_handler_s(NULL);
    _putenv(saved);
    FILE *file = tmpfile(), *second = NULL;
    CHECK(file != NULL);
    CHECK_INT(tmpfile_s(&second), 0);
    fputs("kept until it is closed", file);
    rewind(file);
    CHECK_INT(fscanf(file, "%s", own), 1);
    CHECK_STR(own, "kept");
    CHECK_INT(fclose(file), 0);
    CHECK_INT(fclose(second), 0);
}

int main(void)
{
    test_split_and_make();
    test_full();
    test_search();
    test_temporary();
    return check_done();
}
