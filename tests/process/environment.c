/* The environment, and libraries loaded at run time. */
#include "check.h"

#include <dlfcn.h>
#include <stdlib.h>

static void test_variables(void)
{
    char value[8];
    wchar_t wide[8];
    size_t length = 99;
    CHECK(getenv("PATH") && getenv("path") == getenv("Path"));
    CHECK(!getenv("no such variable") && !getenv("") && !getenv("PAT") && !getenv("PATH=") && !getenv(NULL));
    CHECK_INT(_putenv("Vexed=one"), 0);
    CHECK_STR(getenv("VEXED"), "one");
    CHECK(!_wgetenv(L"vexed")); /* the other copy is stale until it is set through itself */
    CHECK_INT(_wputenv(L"Other=\xE9"), 0);
    CHECK_WSTR(_wgetenv(L"vexed"), L"one");
    CHECK(!getenv("other"));
    CHECK_INT(_putenv("vexed=a=b"), 0);
    CHECK_STR(getenv("Vexed"), "a=b");
    CHECK_STR(getenv("vexed=A"), "b"); /* the entry's first characters and a "=" are all that is looked at */
    CHECK_STR(getenv("OTHER"), "\xE9");
    CHECK_INT(_putenv("vexed="), 0);
    CHECK(!getenv("Vexed"));
    CHECK_INT(_putenv("vexed="), 0);
    CHECK_INT(_putenv("no equals sign"), -1);
    CHECK_INT(_putenv("=value"), -1);
    CHECK_INT(_putenv(NULL), -1);
    _putenv("vexed=12345");
    CHECK_INT(getenv_s(&length, value, 6, "vexed"), 0);
    CHECK_STR(value, "12345");
    CHECK_INT(length, 5);
    CHECK_INT(getenv_s(&length, value, 5, "vexed"), ERANGE);
    CHECK_STR(value, "");
    CHECK_INT(length, 5);
    CHECK_INT(getenv_s(&length, NULL, 0, "vexed"), ERANGE);
    CHECK_INT(length, 5);
    CHECK_INT(getenv_s(NULL, value, 8, "vexed"), 0);
    CHECK_INT(getenv_s(&length, value, 8, "none such"), ENOENT);
    CHECK(length == 0 && !*value);
    CHECK_INT(getenv_s(&length, NULL, 1, "vexed"), EINVAL);
    *value = 'x';
    CHECK_INT(getenv_s(&length, value, 0x80000000, "vexed"), EINVAL);
    CHECK_INT(*value, 0);
    CHECK_INT(getenv_s(&length, value, 8, NULL), EINVAL);
    _wputenv(L"vexed=123");
    CHECK_INT(_wgetenv_s(&length, wide, 4, L"VEXED"), 0);
    CHECK_WSTR(wide, L"123");
}

static void test_libraries(void)
{
    void *library = _dlopen("kernel32.dll", RTLD_NOW);
    CHECK(library && !_dlerror());
    unsigned(__stdcall * ticks)(void) = (unsigned(__stdcall *)(void))_dlsym(library, "GetTickCount");
    CHECK(ticks && ticks() != 0);
    CHECK(!_dlsym(library, "NoSuchFunction"));
    CHECK_STR(_dlerror(), "Symbol not found");
    CHECK_STR(_dlerror(), NULL);
    CHECK_INT(_dlclose(library), 0);
    CHECK(!_dlopen("no-such-library.dll", RTLD_LAZY));
    CHECK_STR(_dlerror(), "Module not found");
    FILE *file = fopen("broken-library.dll", "wb");
    fputs("MZ and nothing else", file);
    fclose(file);
    CHECK(!_dlopen("broken-library.dll", 0));
    CHECK_STR(_dlerror(), "Invalid image format");
    CHECK(_dlopen(NULL, 0) != NULL);
    CHECK_INT(_dlclose((void *)1), 1);
    CHECK(_dlerror() != NULL);
}

int main(void)
{
    test_variables();
    test_libraries();
    return check_done();
}
