/* Conversions between text and numbers. */
#include "bench.h"

#include <stdlib.h>

int main(void)
{
    static const char *volatile ten = "1234567890";
    static const char *volatile two = "42";
    static const char *volatile hexadecimal = "0x7fffffff";
    static const char *volatile nineteen = "1234567890123456789";
    BENCH("strtol, 10 digits", 1, bench_keep(strtol(ten, NULL, 10)));
    BENCH("strtol, 2 digits", 1, bench_keep(strtol(two, NULL, 10)));
    BENCH("strtol, hexadecimal", 1, bench_keep(strtol(hexadecimal, NULL, 0)));
    BENCH("strtoll, 19 digits", 1, bench_keep((long)strtoll(nineteen, NULL, 10)));
    BENCH("atoi", 1, bench_keep(atoi(ten)));
    return 0;
}
