/* Calendar conversions and the formatting of dates, in a zone with daylight saving where the library
   can be told of one. */
#include "bench.h"

#include <stdlib.h>
#include <time.h>

int main(void)
{
    static volatile time_t now = 1278244800; /* a day in summer */
    static char text[100];
    time_t t;
    struct tm tm;
#ifdef __VEXRT__
    __declspec(dllimport) int __stdcall SetEnvironmentVariableA(const char *, const char *);
    SetEnvironmentVariableA("TIMEZONE", ":CET:CEST:+0100:040101-7:110101-7");
#elif defined _WIN32
    _putenv("TZ=CET-1CEST");
#else
    setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
#endif
    BENCH("gmtime", 1, t = now; bench_keep(gmtime(&t)));
    BENCH("gmtime, a new day each call", 1, t = now + (time_t)(bench_i_ % 10000) * 86400; bench_keep(gmtime(&t)));
    BENCH("localtime", 1, t = now; bench_keep(localtime(&t)));
    BENCH("localtime, a new day each call", 1, t = now + (time_t)(bench_i_ % 10000) * 86400; bench_keep(localtime(&t)));
    t = now;
    tm = *localtime(&t);
    BENCH("mktime", 1, bench_keep(mktime(&tm)));
    BENCH("mktime, a day more each call", 1, tm.tm_mday += 1; tm.tm_year = 110; bench_keep(mktime(&tm)));
    tm = *localtime(&t);
    BENCH("strftime, date and time", 1, bench_keep(strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &tm)));
    BENCH("strftime, names", 1, bench_keep(strftime(text, sizeof text, "%A, %d %B %Y", &tm)));
    BENCH("strftime, %c", 1, bench_keep(strftime(text, sizeof text, "%c", &tm)));
    BENCH("asctime", 1, bench_keep(asctime(&tm)));
    BENCH("time", 1, bench_keep(time(NULL)));
    return 0;
}
