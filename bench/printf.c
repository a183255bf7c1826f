/* Formatted output and input to a buffer. Compiles against any C library. */
#include "bench.h"

#include <stdio.h>
#include <wchar.h>

#define LITERAL "sixty-four bytes of literal text, which no conversion interrupts"

int main(void)
{
    char text[256];
    wchar_t wide_text[256];
    const char *volatile word = "hello";
    volatile int number = 123456, small = 42;
    volatile long long large = 1234567890123456789LL;
    volatile double pi = 3.141592653589793, tiny = 1.2345678901234567e-290;

    BENCH("snprintf %d", 1, bench_keep(snprintf(text, sizeof text, "%d", number)));
    BENCH("snprintf %s %d %x\\n", 1,
          bench_keep(snprintf(text, sizeof text, "%s %d %x\n", word, small, number)));
    BENCH("snprintf %08x", 1, bench_keep(snprintf(text, sizeof text, "%08x", number)));
    BENCH("snprintf %-20s|", 1, bench_keep(snprintf(text, sizeof text, "%-20s|", word)));
    BENCH("snprintf %lld", 1, bench_keep(snprintf(text, sizeof text, "%lld", large)));
    BENCH("snprintf literal", 1, bench_keep(snprintf(text, sizeof text, LITERAL)));
    BENCH("swprintf %d", 1, bench_keep(swprintf(wide_text, 256, L"%d", number)));
    BENCH("snprintf %.17g", 1, bench_keep(snprintf(text, sizeof text, "%.17g", pi)));
    BENCH("snprintf %f", 1, bench_keep(snprintf(text, sizeof text, "%f", pi)));
    BENCH("snprintf %e, small", 1, bench_keep(snprintf(text, sizeof text, "%e", tiny)));

    static const char *volatile fields = "42 hello 3.14";
    static const char *volatile integers = "1 22 333 4444";
    char read_word[16];
    int a, b, c, d;
    double read_number;
    BENCH("sscanf %d %s %lf", 1, bench_keep(sscanf(fields, "%d %s %lf", &a, read_word, &read_number)));
    BENCH("sscanf %d %d %d %d", 1, bench_keep(sscanf(integers, "%d %d %d %d", &a, &b, &c, &d)));
    return 0;
}
