/*
 * calendar_days - breaks down moments of every day from 1970 to 2099 and puts them together again,
 * and prints a checksum for each year. Any C library gives the same lines for the same zone.
 *
 *   calendar_days [full]     full: every half hour and the second before it
 */
#include <stdio.h>
#include <string.h>
#include <time.h>

static unsigned sum;
static void add(int value)
{
    for (int i = 0; i < 4; ++i) sum = (sum ^ (value >> 8 * i & 0xFF)) * 16777619u; /* FNV-1a */
}

static void add_all(const struct tm *tm)
{
    add(tm->tm_sec), add(tm->tm_min), add(tm->tm_hour), add(tm->tm_mday), add(tm->tm_mon);
    add(tm->tm_year), add(tm->tm_wday), add(tm->tm_yday), add(tm->tm_isdst > 0);
}

static void look_at(time_t t)
{
    add_all(gmtime(&t));
    struct tm local = *localtime(&t);
    add_all(&local);
    add((int)mktime(&local));
    add_all(&local);
}

int main(int argc, char **argv)
{
    int full = argc > 1 && strcmp(argv[1], "full") == 0;
    unsigned day = 1, last_day = 47480; /* 1970-01-02 to 2099-12-30 */
    int year = 70;
    for (; day <= last_day; ++day) {
        time_t start = (time_t)day * 86400;
        if (full) {
            for (int i = 0; i < 48; ++i) look_at(start + 1800 * i - 1), look_at(start + 1800 * i);
        } else {
            time_t hour = start + 3600 * (day % 24);
            look_at(start), look_at(hour - 1), look_at(hour);
        }
        int now = gmtime(&start)->tm_year;
        if (now == year && day != last_day) continue;
        printf("%d %08x\n", 1900 + year, sum);
        sum = 0;
        year = now;
    }
    return 0;
}
