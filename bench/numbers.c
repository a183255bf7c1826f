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

    static const char *volatile short_text = "3.14";
    static const char *volatile seventeen = "0.12345678901234567e-5";
    static const char *volatile twenty_five = "1234567890.123456789012345";
    static const char *volatile subnormal = "1.2345678901234567e-310";
    static char many[810] = "3.";
    for (int i = 2; i < 802; ++i) many[i] = (char)('0' + i * 7 % 10);
    char *volatile many_digits = many;
    BENCH("strtod, 3.14", 1, bench_keep(strtod(short_text, NULL)));
    BENCH("strtod, 17 digits", 1, bench_keep(strtod(seventeen, NULL)));
    BENCH("strtod, 25 digits", 1, bench_keep(strtod(twenty_five, NULL)));
    BENCH("strtod, subnormal", 1, bench_keep(strtod(subnormal, NULL)));
    BENCH("strtod, 800 digits", 1, bench_keep(strtod(many_digits, NULL)));
    BENCH("strtof, 3.14", 1, bench_keep(strtof(short_text, NULL)));
    return 0;
}
