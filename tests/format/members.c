/* The members of the families that the other tests do not call: they reach the same workers. */
#include "check.h"

#include <inttypes.h>
#include <stdarg.h>
#include <stdlib.h>

__declspec(dllimport) int __stdcall DeleteFileA(const char *path);
float __stof(const char *, char **, int);
long double __stold(const char *, char **, int);
long long __stoll(const char *, char **, int);
unsigned long long __stoull(const char *, char **, int);
double __wstod(const wchar_t *, wchar_t **, int);
long double __wstold(const wchar_t *, wchar_t **, int);
unsigned long __wstoul(const wchar_t *, wchar_t **, int);
unsigned long long __wstoull(const wchar_t *, wchar_t **, int);
long long __wstoll(const wchar_t *, wchar_t **, int);

#define NAME "format-members.tmp"

/* Calls a member that takes a list. */
#define LISTED(name, call)                                                                         \
    static int name(int unused, ...)                                                               \
    {                                                                                              \
        va_list list;                                                                              \
        va_start(list, unused);                                                                    \
        int result = call;                                                                         \
        va_end(list);                                                                              \
        return result;                                                                             \
    }
static FILE *file;
LISTED(list_fscanf, vfscanf(file, "%d", list))
LISTED(list_fscanf_s, vfscanf_s(file, "%d", list))
LISTED(list_scanf, vscanf("%d", list))
LISTED(list_scanf_s, vscanf_s("%d", list))
LISTED(list_sscanf, vsscanf("41", "%d", list))
LISTED(list_sscanf_s, vsscanf_s("41", "%d", list))
LISTED(list_fwscanf, vfwscanf(file, L"%d", list))
LISTED(list_fwscanf_s, vfwscanf_s(file, L"%d", list))
LISTED(list_wscanf, vwscanf(L"%d", list))
LISTED(list_wscanf_s, vwscanf_s(L"%d", list))
LISTED(list_swscanf, vswscanf(L"41", L"%d", list))
LISTED(list_swscanf_s, vswscanf_s(L"41", L"%d", list))
LISTED(list_fwprintf, vfwprintf(file, L"%d ", list))
LISTED(list_fwprintf_s, vfwprintf_s(file, L"%d ", list))
LISTED(list_wprintf, vwprintf(L"%d ", list))
LISTED(list_wprintf_s, vwprintf_s(L"%d ", list))

static void test_input(void)
{
    int value = 0, wide;
    file = fopen(NAME, "w");
    for (int i = 0; i < 40; ++i) fputs("41 ", file);
    fclose(file);
    for (wide = 0; wide < 2; ++wide) {
        CHECK(freopen(NAME, "r", stdin) != NULL);
        file = fopen(NAME, "r");
        int (*const calls[])(int, ...) = {list_fscanf, list_fscanf_s, list_scanf, list_scanf_s, list_sscanf, list_sscanf_s};
        int (*const wide_calls[])(int, ...) = {list_fwscanf, list_fwscanf_s, list_wscanf, list_wscanf_s, list_swscanf, list_swscanf_s};
        for (int i = 0; i < 6; ++i) {
            value = 0;
            CHECK_INT((wide ? wide_calls : calls)[i](0, &value), 1);
            CHECK_INT(value, 41);
        }
        value = 0;
        CHECK_INT(wide ? wscanf(L"%d", &value) : scanf("%d", &value), 1);
        CHECK_INT(wide ? wscanf_s(L"%d", &value) : scanf_s("%d", &value), 1);
        CHECK_INT(value, 41);
        if (wide) {
            CHECK_INT(getwchar(), ' ');
            CHECK_INT(getwc(stdin), '4');
        }
        fclose(file);
    }
}

static void test_output(const char *self)
{
    /* wide output to standard output, in a child of its own, since a stream has one orientation */
    char command[400], line[100];
    sprintf(command, "\"%s\" wide", self);
    FILE *pipe = _popen(command, "r");
    CHECK_STR(fgets(line, sizeof line, pipe), "1 2 3 4 xy\n");
    CHECK_INT(_pclose(pipe), 0);
    wchar_t text[60] = L"";
    file = _wfopen(L"" NAME, L"w");
    CHECK_INT(list_fwprintf(0, 5), 2);
    CHECK_INT(list_fwprintf_s(0, 6), 2);
    fclose(file);
    CHECK_INT(_wfopen_s(&file, L"" NAME, L"r"), 0);
    CHECK_WSTR(fgetws(text, 60, file), L"5 6 ");
    CHECK(_wfreopen(L"" NAME, L"r", file) == file);
    CHECK_INT(_wfreopen_s(&file, L"" NAME, L"r", file), 0);
    setbuf(file, NULL);
    CHECK_INT(getc(file), '5');
    fclose(file);
    DeleteFileA(NAME);
}

static void test_converters(void)
{
    char text[40];
    wchar_t wide[40];
    CHECK(__stof("1.5x", NULL, 1) == 15 && __stold("2", NULL, -1) == 0.2L && __wstod(L"0x10", NULL, 9) == 16);
    CHECK(__wstold(L"3", NULL, 0) == 3);
    CHECK_INT(__stoll("-5", NULL, 10), -5);
    CHECK_INT(__wstoll(L"-5", NULL, 10), -5);
    CHECK_INT(__stoull("ff", NULL, 16), 255);
    CHECK_INT(__wstoull(L"ff", NULL, 16), 255);
    CHECK_INT(__wstoul(L"077", NULL, 0), 63);
    CHECK_INT(wcstoul(L"12", NULL, 0), 12);
    CHECK_INT(wcstoimax(L"-12", NULL, 0), -12);
    CHECK_INT(wcstoumax(L"12", NULL, 0), 12);
    CHECK_INT(_wtol(L" 7"), 7);
    CHECK_WSTR(_lltow(-12, wide, 10), L"-12");
    CHECK_WSTR(_ultow(4000000000u, wide, 10), L"4000000000");
    CHECK_STR(_ultoa(4000000000u, text, 10), "4000000000");
}

int main(int argc, char **argv)
{
    if (argc > 1) {
        list_wprintf(0, 1);
        list_wprintf_s(0, 2);
        wprintf(L"%d ", 3);
        wprintf_s(L"%d ", 4);
        putwc(L'x', stdout);
        putwchar(L'y');
        putwchar(L'\n');
        return 0;
    }
    test_input();
    test_output(argv[0]);
    test_converters();
    return check_done();
}
