/*
 * format_days - prints days in the format that is given, one a line, at times that change from day to
 * day.
 *
 *   format_days FORMAT STEP     every STEP-th day from 1970 to 2099
 */
#include <stdio.h>
#include <stdlib.h>
#include <time.h>

int main(int argc, char **argv)
{
    char text[1000];
    unsigned step;
    if (argc < 3 || (step = strtoul(argv[2], NULL, 10)) == 0) return 2;
    setvbuf(stdout, NULL, _IOFBF, 30000);
    for (unsigned day = 0; day < 47482; day += step) {
        time_t t = (time_t)day * 86400 + day * 7919u % 86400;
        strftime(text, sizeof text, argv[1], gmtime(&t));
        puts(text);
    }
    return 0;
}
