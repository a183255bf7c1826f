/*
 * worldclock - what time it is elsewhere.
 *
 *   worldclock [-s SECONDS] [-f FORMAT]
 *
 *   -s SECONDS   a calendar time instead of now: seconds since 1970
 *   -f FORMAT    how to print, for strftime (%a %d %b %Y %H:%M)
 *
 * The library has one time zone a process, as the environment says. This program computes the others by
 * itself: it starts from UTC, and asks the calendar only for arithmetic. The last line is the library's own
 * zone, with everything that the variable TIMEZONE says of daylight saving.
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

/* Daylight time of the northern half: from one Sunday to another, both at an hour of UTC. */
struct change {
    int month, day, hour; /* the first Sunday on or after that day; no month: no daylight time */
};

struct city {
    const char *name;
    int offset; /* minutes east of UTC */
    struct change begin, end;
};

static const struct city cities[] = {
    {"San Francisco", -480, {3, 8, 10}, {11, 1, 9}},
    {"New York", -300, {3, 8, 7}, {11, 1, 6}},
    {"Reykjavik", 0, {0, 0, 0}, {0, 0, 0}},
    {"London", 0, {3, 25, 1}, {10, 25, 1}},
    {"Berlin", 60, {3, 25, 1}, {10, 25, 1}},
    {"Mumbai", 330, {0, 0, 0}, {0, 0, 0}},
    {"Singapore", 480, {0, 0, 0}, {0, 0, 0}},
    {"Tokyo", 540, {0, 0, 0}, {0, 0, 0}},
};

/* The seconds since 1970 of a date in UTC: mktime() takes a local one, so the zone's offset is taken off
   again. */
static time_t utc_time(int year, int month, int day, int hour)
{
    struct tm epoch = {.tm_year = 70, .tm_mday = 2}, date = {0};
    time_t day_one = mktime(&epoch); /* 86400 in UTC */
    date.tm_year = year;
    date.tm_mon = month - 1;
    date.tm_mday = day;
    date.tm_hour = hour;
    return mktime(&date) - day_one + 86400;
}

static time_t time_of_change(const struct change *change, int year)
{
    time_t start = utc_time(year, change->month, change->day, 0);
    int weekday = gmtime(&start)->tm_wday;
    return utc_time(year, change->month, change->day + (7 - weekday) % 7, change->hour);
}

static int is_daylight(const struct city *city, time_t now)
{
    if (!city->begin.month) return 0;
    int year = gmtime(&now)->tm_year;
    return now >= time_of_change(&city->begin, year) && now < time_of_change(&city->end, year);
}

static void print(const char *name, const char *format, const struct tm *tm)
{
    char text[200];
    if (strftime(text, sizeof text, format, tm) == 0) strcpy(text, "(too long)");
    printf("%-14s %s\n", name, text);
}

int main(int argc, char **argv)
{
    const char *format = "%a %d %b %Y %H:%M";
    time_t now = time(NULL);
    for (int i = 1; i < argc; i += 2) {
        if (i + 1 < argc && strcmp(argv[i], "-s") == 0) now = strtoul(argv[i + 1], NULL, 10);
        else if (i + 1 < argc && strcmp(argv[i], "-f") == 0) format = argv[i + 1];
        else return fputs("usage: worldclock [-s SECONDS] [-f FORMAT]\n", stderr), 2;
    }
    for (size_t i = 0; i < sizeof cities / sizeof *cities; ++i) {
        const struct city *city = &cities[i];
        int minutes = city->offset + 60 * is_daylight(city, now);
        time_t there = now + (time_t)(minutes * 60);
        print(city->name, format, gmtime(&there));
    }
    print("UTC", format, gmtime(&now));
    print("here", format, localtime(&now));
    return 0;
}
