// options: -Wno-missing-field-initializers
/* Where the time zone comes from, every form of it that is right and wrong, and daylight saving rules.
   A process has one zone, so that every case is a child of its own. */
#include "check.h"
#include "child.h"
#include "script.h"

#include <stdlib.h>
#include <sys/time.h>
#include <sys/timeb.h>
#include <time.h>

__declspec(dllimport) int __stdcall SetEnvironmentVariableA(const char *name, const char *value);

__declspec(dllimport) unsigned long __stdcall GetLastError(void);
__declspec(dllimport) void __stdcall SetLastError(unsigned long);

/* ---- the system's answers ---- */

struct date {
    unsigned short year, month, weekday, day, hour, minute, second, millisecond;
};
struct zone {
    long bias;
    wchar_t standard_name[32];
    struct date standard;
    long standard_bias;
    wchar_t daylight_name[32];
    struct date daylight;
    long daylight_bias;
};

static const struct {
    unsigned long kind;
    struct zone zone;
} systems[] = {
    {0, {300, L"", {0}, 0, L"", {0}, -60}},
    {1, {300, L"", {0, 11, 0, 1, 2}, 0, L"", {0, 3, 0, 2, 2}, -60}},   /* second and first Sunday */
    {2, {-60, L"", {0, 10, 0, 5, 3}, 0, L"", {0, 3, 0, 5, 2}, -60}},   /* last Sundays */
    {2, {0, L"", {2010, 10, 0, 31, 2}, 0, L"", {2010, 3, 0, 28, 1}, -60}}, /* dates */
    {2, {-330, L"", {0}, 0, L"", {0}, -60}},                            /* half an hour, no rules */
    {1, {-600, L"", {0, 4, 0, 1, 3}, 0, L"", {0, 10, 0, 1, 2}, -60}},
    {9, {300}},
    {0xFFFFFFFF, {300}},
};
static int system_number;

static unsigned long __stdcall answer_zone(struct zone *zone)
{
    *zone = systems[system_number].zone;
    return systems[system_number].kind;
}

static void __stdcall answer_time(struct date *now)
{
    memset(now, 0, sizeof *now);
    now->year = 2010;
    now->month = 7;
    now->day = 1;
}

/* ---- the child: prints the local time of each argument; without any, the zone's names and offsets ---- */

static int child_main(int argc, char **argv)
{
    system_number = atoi(argv[1]);
    script_import("GetTimeZoneInformation", answer_zone);
    script_import("GetSystemTime", answer_time);
    SetLastError(4711);
    time_t first = 0;
    localtime(&first); /* finds out the zone */
    if (GetLastError() != 4711) printf("the last error is lost ");
    char names[40];
    struct tm standard = {0}, daylight = {.tm_isdst = 1};
    if (argc == 2 && strftime(names, 20, "%Z%z ", &standard) && strftime(names + strlen(names), 20, "%Z%z", &daylight))
        printf("%s", names);
    for (int i = 2; i < argc; ++i) {
        time_t t = strtoul(argv[i], NULL, 10);
        const struct tm *tm = localtime(&t);
        printf("%s%d-%02d-%02d %02d:%02d:%02d %d", i > 2 ? ", " : "", tm->tm_year + 1900, tm->tm_mon + 1,
               tm->tm_mday, tm->tm_hour, tm->tm_min, tm->tm_sec, tm->tm_isdst);
    }
    return 0;
}

static const struct {
    const char *timezone, *tz; /* the variables; null: not set */
    int system;
    const char *times, *due;
} cases[] = {
    /* The variable TIMEZONE as it stands. */
    {":AAA:BBB:+0200", "EST05", 0, "1278244800", "2010-07-04 14:00:00 0"},
    {":AAA:BBB:+0545", NULL, 0, "1278244800", "2010-07-04 17:45:00 0"},
    {":AAA:BBB:-0530", NULL, 0, "1278244800", "2010-07-04 06:30:00 0"},
    {";AAA;BBB;-0530", NULL, 0, "1278244800", "2010-07-04 06:30:00 0"},
    {":AAA:BBB:530", NULL, 0, "1278244800", "2010-07-04 17:30:00 0"},
    {":AAA:BBB:+1299", NULL, 0, "1278244800", "2010-07-05 01:39:00 0"},
    {":AAA:BBB:+1300", NULL, 0, "1278244800", "2010-07-04 12:00:00 0"},
    {":AAA:BBB:-1300", NULL, 0, "1278244800", "2010-07-04 12:00:00 0"},
    {":AAA:BBB:99999999999999999999", NULL, 0, "1278244800", "2010-07-04 12:00:00 0"},
    {":AAA:BBB:+01x0", NULL, 0, "1278244800", "2010-07-04 12:00:00 0"},
    {":AAA:BBB:+", NULL, 0, "1278244800", "2010-07-04 12:00:00 0"},
    {":AAA:BBB: 0100", NULL, 0, "1278244800", "2010-07-04 12:00:00 0"},
    {":AAA:BBB:", NULL, 0, "1278244800", "2010-07-04 12:00:00 0"},
    {":AAA", NULL, 0, "1278244800", "2010-07-04 12:00:00 0"},
    {":", NULL, 0, "1278244800", "2010-07-04 12:00:00 0"},
    /* Rules: switching on at 01 UTC on 28 March and off at 01 UTC on 31 October of 2010. */
    {":A:B:+0100:032801:103101", NULL, 0, "1269737999 1269738000 1288486799 1288486800",
     "2010-03-28 01:59:59 0, 2010-03-28 03:00:00 1, 2010-10-31 02:59:59 1, 2010-10-31 02:00:00 0"},
    {":A:B:+0100:040101-7:110101-7", NULL, 0, "1269737999 1269738000 1288486799 1288486800",
     "2010-03-28 01:59:59 0, 2010-03-28 03:00:00 1, 2010-10-31 02:59:59 1, 2010-10-31 02:00:00 0"},
    {":A:B:+0100:032501+7:102501+7", NULL, 0, "1269737999 1269738000 1288486799 1288486800",
     "2010-03-28 01:59:59 0, 2010-03-28 03:00:00 1, 2010-10-31 02:59:59 1, 2010-10-31 02:00:00 0"},
    {":A:B:+0100:032801+7:103101+7", NULL, 0, "1269737999 1269738000", /* on that very day */
     "2010-03-28 01:59:59 0, 2010-03-28 03:00:00 1"},
    {":A:B:+0100:032801-7:103101", NULL, 0, "1269133199 1269133200", /* the week before */
     "2010-03-21 01:59:59 0, 2010-03-21 03:00:00 1"},
    {":A:B:+0530:0328:1031", NULL, 0, "1269734399 1269734400", /* hour 00 UTC */
     "2010-03-28 05:29:59 0, 2010-03-28 06:30:00 1"},
    {":A:B:+0000:032725:1031", NULL, 0, "1269737999 1269738000", /* hour 25: 01 on the day after */
     "2010-03-28 00:59:59 0, 2010-03-28 02:00:00 1"},
    {":A:B:+0000:0229:0302", NULL, 0, "1267315200 1267401600 1330387200 1330473600",
     "2010-02-28 00:00:00 0, 2010-03-01 01:00:00 1, 2012-02-28 00:00:00 0, 2012-02-29 01:00:00 1"},
    {":A:B:+0000:(2010)0101:(2010)1231", NULL, 0, "1262303999 1262304000 1309478400",
     "2009-12-31 23:59:59 0, 2010-01-01 01:00:00 1, 2011-07-01 01:00:00 1"},
    {":A:B:+0000:(2010)0101:1231", NULL, 0, "1278244800", /* of different years: no pair */
     "2010-07-04 12:00:00 0"},
    {":A:B:+0000:0101", NULL, 0, "1278244800", "2010-07-04 12:00:00 0"}, /* a start without an end */
    {":A:B:+0000:(2009)0601:(2009)0701:0101:1231", NULL, 0, "1276000000 1278244800",
     "2010-06-08 13:26:40 1, 2010-07-04 13:00:00 1"},
    {":A:B:+0100:", NULL, 0, "1278244800", "2010-07-04 13:00:00 0"},
    /* The variable TZ. */
    {NULL, "CET01CES", 0, "1278244800", "2010-07-04 13:00:00 0"},
    {NULL, "CET+01", 0, "1278244800", "2010-07-04 13:00:00 0"},
    {NULL, "EST-05EDT", 0, "1278244800", "2010-07-04 07:00:00 0"},
    {NULL, "EST-13", 0, "1278244800", "2010-07-04 12:00:00 0"}, /* no offset */
    {NULL, "CET01CES", 0, "", "CET+0100 CES+0200"},
    {NULL, "XYZ-05", 0, "", "XYZ-0500 EDT-0400"}, /* what TZ leaves out is New York's */
    /* Unusable: the system says -5 hours. */
    {NULL, "PST8PDT", 0, "1278244800", "2010-07-04 07:00:00 0"},
    {NULL, "CET01CEST", 0, "1278244800", "2010-07-04 07:00:00 0"},
    {NULL, "CET01CE", 0, "1278244800", "2010-07-04 07:00:00 0"},
    {NULL, "CET01C+T", 0, "1278244800", "2010-07-04 07:00:00 0"},
    {NULL, "CE101", 0, "1278244800", "2010-07-04 07:00:00 0"},
    {NULL, "CET0", 0, "1278244800", "2010-07-04 07:00:00 0"},
    {NULL, "CET+-01", 0, "1278244800", "2010-07-04 07:00:00 0"},
    {NULL, "CET01CES,M3.5.0,M10.5.0/3", 0, "1278244800", "2010-07-04 07:00:00 0"},
    /* The system. 031407 and 110706 are the Sundays of 2010, and hold for 2011, too. */
    {NULL, NULL, 0, "1278244800 4102444800", "2010-07-04 07:00:00 0, 2099-12-31 19:00:00 0"},
    {NULL, NULL, 1, "1268549999 1268550000 1289109599 1289109600 1300085999 1300086000",
     "2010-03-14 01:59:59 0, 2010-03-14 03:00:00 1, 2010-11-07 01:59:59 1, 2010-11-07 01:00:00 0, "
     "2011-03-14 01:59:59 0, 2011-03-14 03:00:00 1"},
    {NULL, NULL, 2, "1269737999 1269738000 1288486799 1288486800",
     "2010-03-28 01:59:59 0, 2010-03-28 03:00:00 1, 2010-10-31 02:59:59 1, 2010-10-31 02:00:00 0"},
    {NULL, NULL, 3, "1246622400 1269737999 1269738000 1288486799 1288486800",
     "2009-07-03 12:00:00 0, 2010-03-28 00:59:59 0, 2010-03-28 02:00:00 1, 2010-10-31 01:59:59 1, "
     "2010-10-31 01:00:00 0"},
    {NULL, NULL, 4, "1278244800", "2010-07-04 17:50:00 0"}, /* "+0550", decimal hours */
    {NULL, NULL, 4, "", "UTC+0550 UTC+0650"},
    {NULL, NULL, 5, "1262304000 1286000000 1291204800", /* south: from 3 October, the end has passed */
     "2010-01-01 10:00:00 0, 2010-10-02 16:13:20 0, 2010-12-01 22:00:00 0"},
    {NULL, NULL, 6, "1278244800", "2010-07-04 12:00:00 0"}, /* no answer */
    {NULL, NULL, 7, "1278244800", "2010-07-04 12:00:00 0"},
};

static const char *const bad_rules[] = {
    "032801:", ":032801", "03280", "0328011", "1328", "0028", "0332", "0300", "0328x1", "0328-",
    "0328-0", "0328+8", "0328+77", "(201)0328", "(1899)0328", "(2156)0328", "(20100328", "(2010)",
    "rule",
};

static void test_zones(void)
{
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        char arguments[200], label[100];
        snprintf(label, sizeof label, "TIMEZONE %s, TZ %s, system %d",
                 cases[i].timezone ? cases[i].timezone : "-", cases[i].tz ? cases[i].tz : "-",
                 cases[i].system);
        check_label = label;
        SetEnvironmentVariableA("TIMEZONE", cases[i].timezone);
        SetEnvironmentVariableA("TZ", cases[i].tz);
        snprintf(arguments, sizeof arguments, "%d %s", cases[i].system, cases[i].times);
        CHECK_STR(child_run(arguments, NULL).output, cases[i].due);
    }
    SetEnvironmentVariableA("TZ", NULL);
    for (size_t i = 0; i < sizeof bad_rules / sizeof *bad_rules; ++i) {
        char zone[60] = ":A:B:+0100:";
        check_label = bad_rules[i];
        SetEnvironmentVariableA("TIMEZONE", strcat(zone, check_label));
        CHECK_STR(child_run("0 1278244800", NULL).output, "2010-07-04 13:00:00 -1");
    }
    check_label = "";
}

/* Thousands of rules: the walk takes them all. */
static void test_long_string(void)
{
    char *zone = malloc(32000);
    strcpy(zone, ":A:B:+0100");
    for (size_t length = strlen(zone); length + 30 < 32000; length = strlen(zone))
        strcat(zone + length, ":0101:010100");
    strcat(zone, ":032801:103101");
    SetEnvironmentVariableA("TIMEZONE", zone);
    CHECK_STR(child_run("0 1278244800 1262304000", NULL).output,
              "2010-07-04 14:00:00 1, 2010-01-01 01:00:00 0");
    free(zone);
}

/* ---- clocks ---- */

static unsigned long long file_time, counter;
static void __stdcall answer_file_time(unsigned long long *now) { *now = file_time; }
static int __stdcall answer_counter(unsigned long long *now)
{
    *now = counter;
    return 1;
}
static int __stdcall no_counter(unsigned long long *now) { return 0; }

static void test_clocks(void)
{
    const unsigned long long units_1970 = 116444736000000000;
    struct timespec ts = {0};
    struct timeb tb = {0};
    struct timeval tv = {0};
    struct timezone tz = {0};
    time_t t = 0;
    SetEnvironmentVariableA("TIMEZONE", ":A:B:-0330:0101:1231");
    script_import("GetSystemTimeAsFileTime", answer_file_time);
    file_time = units_1970 + 12782448001234567;
    CHECK(time(NULL) == 1278244800 && time(&t) == 1278244800 && t == 1278244800);
    CHECK(timespec_get(&ts, TIME_UTC) == TIME_UTC && ts.tv_sec == 1278244800 && ts.tv_nsec == 123456700);
    CHECK(!timespec_get(&ts, 0) && !timespec_get(&ts, 2) && !timespec_get(NULL, TIME_UTC));
    CHECK(_ftime(&tb) == 0 && tb.time == 1278244800 && tb.millitm == 123 && tb.timezone == 210 && tb.dstflag == 1);
    CHECK_ERRNO(_ftime(NULL), -1, EINVAL);
    CHECK(_gettimeofday(&tv, &tz) == 0 && tv.tv_sec == 1278244800 && tv.tv_usec == 123456);
    CHECK(tz.tz_minuteswest == 210 && tz.tz_dsttime == 1 && _gettimeofday(NULL, NULL) == 0);
    file_time = units_1970 + 42949672960000000 - 1; /* the last moment */
    CHECK_INT(time(NULL), 0xFFFFFFFF);
    script_restore();
    CHECK(difftime(0xFFFFFFFF, 0) == 4294967295.0);
    CHECK(difftime(0, 0xFFFFFFFF) == -4294967295.0);
}

__declspec(dllimport) int __stdcall QueryPerformanceFrequency(unsigned long long *frequency);
__declspec(dllimport) int __stdcall QueryPerformanceCounter(unsigned long long *frequency);
__declspec(dllimport) void __stdcall Sleep(unsigned long);

static void test_clock(void)
{
    unsigned long long frequency, now;
    clock_t before = clock();
    Sleep(30);
    clock_t passed = clock() - before;
    CHECK(before >= 0 && before < 60000);
    CHECK(passed >= 25 && passed < 5000);
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&now);
    script_import("QueryPerformanceCounter", answer_counter);
    counter = now + frequency * 2000000; /* 23 days on */
    CHECK(clock() >= 2000000000);
    counter = now + frequency * 2147484; /* one second too many */
    CHECK_INT(clock(), -1);
    script_restore();
    script_import("QueryPerformanceCounter", no_counter);
    CHECK_INT(clock(), -1);
    script_restore();
}

int main(int argc, char **argv)
{
    if (argc > 1) return child_main(argc, argv);
    test_zones();
    test_long_string();
    test_clocks();
    test_clock();
    return check_done();
}
