/* Dates in locales of the system: names, formats, and the wide forms of multibyte names. */
#include "check.h"

#include <locale.h>
#include <stdlib.h>
#include <time.h>

__declspec(dllimport) int __stdcall SetEnvironmentVariableA(const char *name, const char *value);
__declspec(dllimport) int __stdcall MultiByteToWideChar(unsigned page, unsigned long flags, const char *s,
                                                        int size, wchar_t *to, int room);

static const struct tm date = {7, 6, 15, 4, 2, 110, 4, 62, 0};

static const char *format(const char *how)
{
    static char text[200];
    text[0] = 'x';
    size_t length = strftime(text, sizeof text, how, &date);
    CHECK_INT(length, strlen(text));
    return text;
}

static void test_formats(void)
{
    CHECK_STR(setlocale(LC_ALL, "US"), "US");
    CHECK_STR(format("%A %B %p"), "Thursday March PM");
    CHECK_STR(format("[%r]"), "[]"); /* a system's locale has three formats */
    CHECK_STR(format("%X"), "03:06:07 PM");
    CHECK_STR(setlocale(LC_ALL, "DE"), "DE");
    CHECK_STR(format("%A, %d. %b, %x %X"), "Donnerstag, 04. M\xE4r, 04.03.2010 15:06:07");
    CHECK_STR(format("%Ex|%Or|%EY|%Od|%EC"), "04.03.2010||2010|04|20");
    CHECK_STR(format("%Z%z"), "A+0100"); /* the zone is not the locale's */
    CHECK_STR(asctime(&date), "Thu Mar  4 15:06:07 2010\n"); /* nor is this */
    setlocale(LC_TIME, "C");
    CHECK_STR(format("%A %r"), "Thursday 03:06:07 PM");
    setlocale(LC_ALL, "C");
}

static void test_wide(void)
{
    static const struct {
        const char *locale;
        unsigned page;
    } cases[] = {{"US", 1252}, {"DE", 1252}, {"JP", 932}};
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        wchar_t wide[200], due[200];
        check_label = cases[i].locale;
        CHECK_STR(setlocale(LC_ALL, cases[i].locale), cases[i].locale);
        const char *narrow = format("%A %B %a %b %p %c %x");
        CHECK(MultiByteToWideChar(cases[i].page, 0, narrow, -1, due, 200) > 10);
        CHECK_INT(wcsftime(wide, 200, L"%A %B %a %b %p %c %x", &date), wcslen(due));
        CHECK_WSTR(wide, due);
    }
    check_label = "";
    setlocale(LC_ALL, "C");
}

int main(void)
{
    SetEnvironmentVariableA("TIMEZONE", ":A:B:+0100");
    test_formats();
    test_wide();
    return check_done();
}
