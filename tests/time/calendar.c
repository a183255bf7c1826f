/* The calendar both ways, against the plain rule written out here, over all dates and odd fields. */
#include "check.h"
#include "violations.h"

#include <limits.h>
#include <time.h>

__declspec(dllimport) int __stdcall SetEnvironmentVariableA(const char *name, const char *value);
__declspec(dllimport) void *__stdcall CreateThread(void *, size_t, unsigned long(__stdcall *)(void *),
                                                   void *, unsigned long, unsigned long *);
__declspec(dllimport) unsigned long __stdcall WaitForSingleObject(void *, unsigned long);

/* ---- the plain rule ---- */

static const int month_days[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
static int is_leap(int y) { return y != 0 && y % 4 == 0; }
static int leap_days(int y) { return y > 0 ? (y - 1) / 4 : 0; }
static int days_before(int y, int month)
{
    int days = 0;
    for (int m = 0; m < month; ++m) days += month_days[m] + (m == 1 && is_leap(y));
    return days;
}

static struct tm plain_break_down(unsigned t)
{
    struct tm to = {0};
    unsigned days = t / 86400, from_1900 = days + 25567;
    int y = (int)(from_1900 / 365);
    while ((unsigned)(y * 365 + leap_days(y)) > from_1900) --y;
    to.tm_wday = (int)((days + 25568) % 7);
    to.tm_year = y;
    to.tm_yday = (int)from_1900 - (y * 365 + leap_days(y));
    for (to.tm_mon = 11; days_before(y, to.tm_mon) > to.tm_yday; --to.tm_mon) {
    }
    to.tm_mday = to.tm_yday - days_before(y, to.tm_mon) + 1;
    to.tm_hour = (int)(t % 86400 / 3600);
    to.tm_min = (int)(t % 3600 / 60);
    to.tm_sec = (int)(t % 60);
    return to;
}

static int plain_make(const struct tm *tm, unsigned *t)
{
    int c = tm->tm_mon / 12, m = tm->tm_mon - 12 * c;
    if (m < 0) m += 12, --c;
    if ((c < 0 && tm->tm_year < INT_MIN - c) || (c > 0 && INT_MAX - c < tm->tm_year)) return 0;
    int y = tm->tm_year + c;
    double s = ((double)(leap_days(y) + days_before(y, m)) - 1 + tm->tm_mday) * 86400 +
               y * 31536000.0 + tm->tm_hour * 3600.0 + tm->tm_min * 60.0 + tm->tm_sec;
    if (!(s >= 0)) return 0;
    *t = (unsigned)(long long)(s - 2208988800.0);
    if (tm->tm_isdst > 0) *t -= 3600;
    return 1;
}

static int same(const struct tm *a, const struct tm *b) { return memcmp(a, b, sizeof *a) == 0; }

static const char *text_of(const struct tm *tm)
{
    static char texts[2][100];
    static int next;
    char *text = texts[next ^= 1];
    sprintf(text, "%d-%02d-%02d %02d:%02d:%02d w%d y%d d%d", tm->tm_year + 1900, tm->tm_mon + 1,
            tm->tm_mday, tm->tm_hour, tm->tm_min, tm->tm_sec, tm->tm_wday, tm->tm_yday, tm->tm_isdst);
    return text;
}

/* ---- the tests ---- */

static unsigned random_bits(void)
{
    static unsigned state = 1;
    unsigned high = state = state * 1664525 + 1013904223;
    state = state * 1664525 + 1013904223;
    return high >> 16 | (state & 0xFFFF0000);
}

static void test_known_times(void)
{
    static const struct {
        time_t t;
        const char *due;
    } cases[] = {
        {0, "1970-01-01 00:00:00 w4 y0 d0"},
        {951782400, "2000-02-29 00:00:00 w2 y59 d0"},
        {978307199, "2000-12-31 23:59:59 w0 y365 d0"},
        {0x7FFFFFFF, "2038-01-19 03:14:07 w2 y18 d0"},
        {4107542399u, "2100-02-28 23:59:59 w0 y58 d0"},
        {4107542400u, "2100-02-29 00:00:00 w1 y59 d0"}, /* a leap year here */
        {4107628800u, "2100-03-01 00:00:00 w2 y60 d0"},
        {0xFFFFFFFF, "2106-02-06 06:28:15 w0 y36 d0"},
    };
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        struct tm result, *shared = gmtime(&cases[i].t);
        CHECK_STR(text_of(shared), cases[i].due);
        CHECK(gmtime_s(&cases[i].t, &result) == &result);
        CHECK_STR(text_of(&result), cases[i].due);
        CHECK(localtime(&cases[i].t) == shared);
        CHECK_INT(mktime(&result), cases[i].t);
    }
}

static void test_every_day(void)
{
    int differences = 0;
    for (unsigned day = 0; day <= 0xFFFFFFFF / 86400; ++day) {
        time_t t = day * 86400 + random_bits() % 86400;
        if (t < day * 86400) continue; /* beyond the last moment */
        struct tm due = plain_break_down(t), got = *gmtime(&t);
        if (!same(&got, &due) && ++differences < 5)
            printf("gmtime(%lu) is %s, due %s\n", t, text_of(&got), text_of(&due));
        struct tm again = got;
        if (mktime(&again) != t || !same(&again, &got))
            if (++differences < 5) printf("mktime(%s) is not %lu\n", text_of(&got), t);
    }
    CHECK_INT(differences, 0);
}

static int random_field(int kind)
{
    switch (kind) {
    case 0: return (int)(random_bits() % 70);
    case 1: return (int)(random_bits() % 4000) - 2000;
    case 2: return (int)random_bits() >> 3;
    case 3: return random_bits() % 2 ? INT_MAX : INT_MIN;
    default: return (int)random_bits();
    }
}

static void test_odd_fields(void)
{
    int differences = 0, failed = 0;
    for (int i = 0; i < 400000; ++i) {
        int kind = i % 5, spread = i / 5 % 3;
        struct tm from = {0};
        from.tm_sec = random_field(spread == 0 ? kind : 0);
        from.tm_min = random_field(spread == 0 ? kind : 0);
        from.tm_hour = random_field(spread == 1 ? kind : 0);
        from.tm_mday = random_field(spread == 1 ? kind : 0);
        from.tm_mon = random_field(spread == 2 ? kind : 0);
        from.tm_year = random_field(i % 7 < 4 ? 1 : kind);
        from.tm_wday = from.tm_yday = 99;
        from.tm_isdst = i % 3 - 1;
        struct tm to = from;
        unsigned due_time = 0xFFFFFFFF;
        int possible = plain_make(&from, &due_time);
        unsigned got = mktime(&to);
        struct tm due = from;
        if (possible) {
            due = plain_break_down(due_time + (from.tm_isdst > 0 ? 3600 : 0));
            due.tm_isdst = from.tm_isdst;
        } else {
            ++failed;
        }
        if ((got != due_time || !same(&to, &due)) && ++differences < 5)
            printf("mktime(%s) is %u, due %u\n", text_of(&from), got, due_time);
    }
    CHECK_INT(differences, 0);
    CHECK(failed > 10000 && failed < 390000);
}

static void test_normalising(void)
{
    struct tm a = {.tm_mon = 12, .tm_year = 100, .tm_mday = 1};
    struct tm b = {.tm_mon = 0, .tm_year = 101, .tm_mday = 1};
    CHECK_INT(mktime(&a), 978307200);
    CHECK_INT(mktime(&b), 978307200);
    CHECK_STR(text_of(&a), "2001-01-01 00:00:00 w1 y0 d0");
    struct tm before_1900 = {.tm_year = 0, .tm_mday = 1, .tm_sec = -1, .tm_wday = 5};
    CHECK_INT((int)mktime(&before_1900), -1);
    CHECK_INT(before_1900.tm_sec, -1);
    CHECK_INT(before_1900.tm_wday, 5);
    struct tm first = {.tm_year = 0, .tm_mday = 1};
    CHECK_INT(mktime(&first), 2085978496u); /* wraps: -2208988800 */
    struct tm no_leap_day = {.tm_year = 0, .tm_mon = 1, .tm_mday = 29};
    struct tm march = {.tm_year = 0, .tm_mon = 2, .tm_mday = 1};
    CHECK_INT(mktime(&no_leap_day), mktime(&march));
}

static void test_daylight_flag(void)
{
    for (int flag = -1; flag <= 2; ++flag) {
        struct tm tm = {.tm_year = 110, .tm_mon = 6, .tm_mday = 4, .tm_hour = 12, .tm_isdst = flag};
        CHECK_INT(mktime(&tm), 1278244800 - (flag > 0 ? 3600 : 0));
        CHECK_INT(tm.tm_isdst, flag);
        CHECK_INT(tm.tm_hour, 12);
    }
}

static unsigned long __stdcall other_thread(void *shared)
{
    time_t t = 0;
    return gmtime(&t) != shared;
}

static void test_arguments(void)
{
    time_t t = 86400;
    struct tm tm, *shared = gmtime(&t);
    CHECK_ERRNO(gmtime(NULL), 0, EINVAL);
    CHECK_ERRNO(localtime(NULL), 0, EINVAL);
    CHECK_ERRNO((int)mktime(NULL), -1, EINVAL);
    count_violations();
    CHECK_REFUSED((int)gmtime_s(NULL, &tm), 0, EINVAL);
    CHECK_REFUSED((int)gmtime_s(&t, NULL), 0, EINVAL);
    CHECK_REFUSED((int)localtime_s(NULL, &tm), 0, EINVAL);
    CHECK_REFUSED((int)localtime_s(&t, NULL), 0, EINVAL);
    CHECK_STR(text_of(shared), "1970-01-02 00:00:00 w5 y1 d0");
    void *thread = CreateThread(NULL, 0, other_thread, shared, 0, NULL);
    WaitForSingleObject(thread, 10000);
    CHECK_STR(text_of(shared), "1970-01-02 00:00:00 w5 y1 d0"); /* theirs is another one */
}

int main(void)
{
    SetEnvironmentVariableA("TIMEZONE", ":UTC:UTC:+0000");
    test_known_times();
    test_every_day();
    test_odd_fields();
    test_normalising();
    test_daylight_flag();
    test_arguments();
    return check_done();
}
