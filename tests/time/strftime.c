/* strftime and the fixed formats: every conversion, fields out of range, buffers that are too small, the
   wide forms with the same results. */
#include "check.h"
#include "guard.h"
#include "script.h"
#include "violations.h"

#include <limits.h>
#include <time.h>

__declspec(dllimport) int __stdcall SetEnvironmentVariableA(const char *name, const char *value);

/* Formats narrow and wide; the wide text must be the same. */
static const char *format(const char *how, const struct tm *tm)
{
    static char text[200];
    wchar_t wide[200], wide_how[100];
    memset(text, 'x', sizeof text);
    size_t length = strftime(text, sizeof text, how, tm);
    mbstowcs(wide_how, how, 100);
    CHECK_INT(wcsftime(wide, 200, wide_how, tm), length);
    CHECK_INT(strlen(text), length);
    for (size_t i = 0; i <= length; ++i)
        if (wide[i] != (unsigned char)text[i]) return "the wide text differs";
    return text;
}

static void test_conversions(void)
{
    static const struct {
        const char *how, *due;
    } cases[] = {
        {"%a|%A|%b|%B|%h", "Sun|Sunday|Jul|July|Jul"},
        {"%c", "Sun Jul  4 15:06:07 2010"},
        {"%C|%y|%Y|%EC|%Ey|%EY", "20|10|2010|20|10|2010"},
        {"%d|%e|%j|%m", "04| 4|185|07"},
        {"%D|%F|%R|%T", "07/04/10|2010-07-04|15:06|15:06:07"},
        {"%G|%g|%V|%U|%W|%u|%w", "2010|10|26|27|26|7|0"},
        {"%H|%I|%M|%S|%p", "15|03|06|07|PM"},
        {"%r|%x|%X", "03:06:07 PM|07/04/10|15:06:07"},
        {"%Ec|%Er|%Ex|%EX", "Sun Jul  4 15:06:07 2010|03:06:07 PM|07/04/10|15:06:07"},
        {"%Od|%Oe|%OH|%OI|%Om|%OM|%OS", "04| 4|15|03|07|06|07"},
        {"%Ou|%OU|%OV|%Ow|%OW|%Oy|%OC|%OG", "7|27|26|0|26|10|20|2010"},
        {"%n%t%%", "\n\t%"},
        {"%Z %z", "EST -0500"},
        {"", ""},
        {"plain", "plain"},
        /* Modifiers that mean nothing there; unknown conversions; a format that stops short. */
        {"%Ed%Oa%E%", "04Sun%"},
        {"%q|%Eq|%Oq|%!", "%q|%Eq|%Oq|%!"},
        {"100%", "100%"},
        {"%E", "%E"},
        {"%O", "%O"},
        {"%EE|%OE", "%EE|%OE"},
        {"%\x81", "%\x81"},
        {"caf\xe9 %d", "caf\xe9 04"},
    };
    struct tm tm = {7, 6, 15, 4, 6, 110, 0, 184, 0};
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        check_label = cases[i].how;
        CHECK_STR(format(cases[i].how, &tm), cases[i].due);
    }
    check_label = "";
    tm.tm_isdst = 1;
    CHECK_STR(format("%Z %z", &tm), "EDT -0400");
    tm.tm_isdst = -1;
    CHECK_STR(format("%Z %z", &tm), "EST -0500");
}

/* Conversions whose field alone is set; the others are 0. */
static void test_fields(void)
{
    static const struct {
        const char *how;
        int field; /* its place in struct tm */
        int value;
        const char *due;
    } cases[] = {
        {"%I", 2, 0, "12"}, {"%I", 2, 1, "01"}, {"%I", 2, 12, "12"}, {"%I", 2, 13, "01"}, {"%I", 2, 23, "11"},
        {"%p", 2, 11, "AM"}, {"%p", 2, 12, "PM"}, {"%p", 2, -1, "AM"}, {"%p", 2, INT_MAX, "PM"},
        {"%e", 3, 5, " 5"}, {"%e", 3, 15, "15"}, {"%e", 3, 0, " 0"},
        {"%u", 6, 0, "7"}, {"%u", 6, 1, "1"}, {"%u", 6, 12, "2"}, {"%u", 6, -1, "0"},
        {"%a%A", 6, 7, ""}, {"%a%A", 6, -1, ""}, {"%a", 6, INT_MAX, ""}, {"%a", 6, INT_MIN, ""},
        {"%b%B", 4, 12, ""}, {"%b", 4, INT_MIN, ""}, {"%b", 4, 11, "Dec"},
        {"%Y", 5, -1900, "0000"}, {"%Y", 5, -1901, "0000"}, {"%Y", 5, 10445, "2345"},
        {"%Y", 5, INT_MAX, "5547"}, {"%Y", 5, INT_MIN, "0000"},
        {"%C", 5, -1, "19"}, {"%C", 5, -100, "18"}, {"%C", 5, -3000, "00"}, {"%C", 5, 8100, "00"},
        {"%y", 5, -1, "99"}, {"%y", 5, -100, "00"}, {"%y", 5, INT_MIN, "52"}, {"%y", 5, 200, "00"},
        {"%j", 7, 365, "366"}, {"%j", 7, -2, "000"}, {"%j", 7, INT_MAX, "648"},
        {"%H", 2, 123, "23"}, {"%S", 0, 60, "60"}, {"%M", 1, -1, "00"}, {"%m", 4, -1, "00"},
        {"%m", 4, INT_MAX, "48"}, {"%d", 3, INT_MIN, "00"},
    };
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        struct tm tm = {0};
        char label[50];
        ((int *)&tm)[cases[i].field] = cases[i].value;
        snprintf(label, sizeof label, "%s of %d", cases[i].how, cases[i].value);
        check_label = label;
        CHECK_STR(format(cases[i].how, &tm), cases[i].due);
    }
    check_label = "";
    struct tm odd = {INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN};
    CHECK(*format("%c%G%g%U%V%W%x%X%r%j%u%Z%z", &odd) != '\0');
    odd = (struct tm){INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX};
    CHECK(*format("%c%G%g%U%V%W%x%X%r%j%u%Z%z", &odd) != '\0');
}

static void test_weeks(void)
{
    struct tm friday = {.tm_year = 121, .tm_wday = 5}, monday = {.tm_year = 108, .tm_wday = 1, .tm_yday = 363};
    CHECK_STR(format("%G %g %V %U %W", &friday), "2020 20 53 00 00"); /* 1 January 2021 */
    CHECK_STR(format("%G %g %V %U %W", &monday), "2009 09 01 52 52"); /* 29 December 2008 */
    /* The leap test for weeks goes by the years since 1900: 1900 is a leap year there, 2000 is none.
       The same day, as it would be in a year that began on a Wednesday. */
    struct tm tm = {.tm_year = 0, .tm_yday = 362, .tm_wday = 1};
    CHECK_STR(format("%G-%V", &tm), "1900-53");
    tm.tm_year = 100;
    CHECK_STR(format("%G-%V", &tm), "2001-01");
}

static void test_room(void)
{
    static const char *const formats[] = {"%c", "%Y-%m-%d", "abc", "%A", "%z", "%e", "%%", "%r", "%q", "%"};
    struct tm tm = {7, 6, 15, 4, 6, 110, 0, 184, 1};
    char due[100], *page = guard_pages(1), *end = page + GUARD_PAGE;
    for (size_t i = 0; i < sizeof formats / sizeof *formats; ++i) {
        check_label = formats[i];
        size_t length = strftime(due, sizeof due, formats[i], &tm);
        wchar_t wide_format[20];
        mbstowcs(wide_format, formats[i], 20);
        for (size_t size = 1; size <= length + 2; ++size) {
            char *to = end - size;
            wchar_t *wide = (wchar_t *)end - size;
            memset(page, 'x', GUARD_PAGE);
            CHECK_INT(wcsftime(wide, size, wide_format, &tm), size > length ? length : 0);
            memset(page, 'x', GUARD_PAGE);
            CHECK_INT(strftime(to, size, formats[i], &tm), size > length ? length : 0);
            CHECK(memchr(to, '\0', size) != NULL);
            if (size > length) CHECK_STR(to, due);
            else CHECK_INT(strncmp(to, due, strlen(to)), 0);
        }
    }
    check_label = "";
    *page = 'x';
    CHECK_INT(strftime(page, 0, "%c", &tm), 0);
    CHECK_INT(*page, 'x');
    CHECK_ERRNO(strftime(NULL, 10, "%c", &tm), 0, EINVAL);
    CHECK_ERRNO(strftime(page, 10, NULL, &tm), 0, EINVAL);
    CHECK_ERRNO(strftime(page, 10, "%c", NULL), 0, EINVAL);
    CHECK_ERRNO(wcsftime(NULL, 10, L"%c", &tm), 0, EINVAL);
}

static void *__stdcall no_block(void *heap, unsigned long flags, size_t size) { return NULL; }
static void *__stdcall no_pages(void *address, size_t size, unsigned long type, unsigned long protect)
{
    return NULL;
}

/* On a thread, whose buffer is not there yet. */
static unsigned long __stdcall without_memory(void *tm)
{
    script_import("HeapAlloc", no_block);
    script_import("VirtualAlloc", no_pages);
    void *volatile block;
    errno = 0; /* makes the thread's record before memory is used up */
    do block = malloc(8);
    while (block);
    do block = malloc(100);
    while (block);
    CHECK_STR(asctime(tm), "Mon Jan 01 02:03:04 1905\n");
    CHECK_WSTR(_wasctime(tm), L"Mon Jan 01 02:03:04 1905\n");
    script_restore();
    return 0;
}

__declspec(dllimport) void *__stdcall CreateThread(void *, size_t, unsigned long(__stdcall *)(void *),
                                                   void *, unsigned long, unsigned long *);
__declspec(dllimport) unsigned long __stdcall WaitForSingleObject(void *, unsigned long);

static void test_asctime(void)
{
    struct tm tm = {7, 6, 15, 4, 6, 110, 0, 184, 0}, far_future = tm;
    time_t t = 0;
    CHECK_STR(asctime(&tm), "Sun Jul  4 15:06:07 2010\n");
    CHECK_WSTR(_wasctime(&tm), L"Sun Jul  4 15:06:07 2010\n");
    CHECK(asctime(&tm) == ctime(&t));
    CHECK_STR(ctime(&t), "Sun Feb  6 01:28:16 2106\n"); /* five hours before 1970 there is 2106 */
    t = 1278273967;
    CHECK_STR(ctime(&t), "Sun Jul  4 15:06:07 2010\n");
    CHECK_WSTR(_wctime(&t), L"Sun Jul  4 15:06:07 2010\n");
    far_future.tm_year = 12345 - 1900;
    CHECK_STR(asctime(&far_future), "Sun Jul  4 15:06:07 2345\n");
    CHECK_ERRNO(asctime(NULL), 0, EINVAL);
    CHECK_ERRNO(ctime(NULL), 0, EINVAL);
    CHECK_ERRNO(_wasctime(NULL), 0, EINVAL);
    CHECK_ERRNO(_wctime(NULL), 0, EINVAL);
}

static void test_checked(void)
{
    struct tm good = {60, 59, 23, 31, 11, 9999, 6, 365, 0};
    static const int beyond[9] = {61, 60, 24, 32, 12, 10000, 7, 366, 0};
    char text[30] = "x";
    wchar_t wide[30] = L"x";
    time_t t = 1278273967;
    CHECK(asctime_s(text, 26, &good) == 0 && _wasctime_s(wide, 26, &good) == 0);
    CHECK_STR(text, "Sat Dec 31 23:59:60 1899\n");
    CHECK_WSTR(wide, L"Sat Dec 31 23:59:60 1899\n");
    CHECK(ctime_s(text, 26, &t) == 0 && _wctime_s(wide, 26, &t) == 0);
    CHECK_STR(text, "Sun Jul  4 15:06:07 2010\n");
    CHECK_WSTR(wide, L"Sun Jul  4 15:06:07 2010\n");
    CHECK_INT(violations, 0);
#define VIOLATION(call, code, left)                                                                \
    *text = 'x', *wide = 'x';                                                                      \
    CHECK_REFUSED(call, code, code);                                                               \
    CHECK_INT(left, 0)
    VIOLATION(asctime_s(NULL, 26, &good), EINVAL, 0);
    VIOLATION(asctime_s(text, 0, &good), EINVAL, *text != 'x');
    VIOLATION(asctime_s(text, 0x80000000, &good), EINVAL, *text != 'x');
    VIOLATION(asctime_s(text, 26, NULL), EINVAL, *text);
    VIOLATION(asctime_s(text, 25, &good), ERANGE, *text);
    VIOLATION(asctime_s(text, 25, NULL), EINVAL, *text);
    VIOLATION(_wasctime_s(wide, 25, &good), ERANGE, *wide);
    VIOLATION(_wasctime_s(wide, 26, NULL), EINVAL, *wide);
    VIOLATION(ctime_s(text, 26, NULL), EINVAL, *text);
    VIOLATION(ctime_s(NULL, 26, &t), EINVAL, 0);
    VIOLATION(ctime_s(text, 25, &t), ERANGE, *text);
    VIOLATION(_wctime_s(wide, 26, NULL), EINVAL, *wide);
    for (int i = 0; i < 8; ++i) {
        struct tm bad = good;
        ((int *)&bad)[i] = beyond[i];
        VIOLATION(asctime_s(text, 26, &bad), ERANGE, *text);
        ((int *)&bad)[i] = i == 3 ? 0 : -1;
        VIOLATION(asctime_s(text, 26, &bad), ERANGE, *text);
    }
}

static void __stdcall noon(unsigned long long *now) { *now = 116444736000000000 + 12782739670000000; }

static void test_now(void)
{
    static const struct {
        const char *due;
        const wchar_t *wide_due;
        char *(*plain)(char *);
        wchar_t *(*wide)(wchar_t *);
        errno_t (*checked)(char *, rsize_t), (*checked_wide)(wchar_t *, rsize_t);
    } cases[] = {{"07/04/10", L"07/04/10", _strdate, _wcsdate, _strdate_s, _wcsdate_s},
                 {"15:06:07", L"15:06:07", _strtime, _wcstime, _strtime_s, _wcstime_s}};
    script_import("GetSystemTimeAsFileTime", noon);
    for (int i = 0; i < 2; ++i) {
        char text[9];
        wchar_t wide[9];
        CHECK(cases[i].plain(text) == text && cases[i].wide(wide) == wide);
        CHECK_STR(text, cases[i].due);
        CHECK_WSTR(wide, cases[i].wide_due);
        CHECK_REFUSED(cases[i].checked(text, 8), ERANGE, ERANGE);
        CHECK_REFUSED(cases[i].checked_wide(wide, 8), ERANGE, ERANGE);
        CHECK(!*text && !*wide);
        CHECK_INT(cases[i].checked(text, 9), 0);
        CHECK_INT(cases[i].checked_wide(wide, 9), 0);
        CHECK_STR(text, cases[i].due);
        CHECK_WSTR(wide, cases[i].wide_due);
        CHECK_REFUSED(cases[i].checked(text, 0), EINVAL, EINVAL);
        CHECK_REFUSED(cases[i].checked_wide(NULL, 9), EINVAL, EINVAL);
        CHECK_ERRNO(cases[i].plain(NULL), 0, EINVAL);
        CHECK_ERRNO(cases[i].wide(NULL), 0, EINVAL);
    }
    script_restore();
}

int main(void)
{
    SetEnvironmentVariableA("TIMEZONE", ":EST:EDT:-0500");
    count_violations();
    test_conversions();
    test_fields();
    test_weeks();
    test_room();
    test_asctime();
    test_checked();
    test_now();
    struct tm tm = {0};
    WaitForSingleObject(CreateThread(NULL, 0, without_memory, &tm, 0, NULL), 20000);
    return check_done();
}
