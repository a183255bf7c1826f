/* Pseudo-random numbers. */
#include "bench.h"

#include <stdlib.h>

int main(void)
{
    BENCH("rand", 1, bench_keep(rand()));
    return 0;
}
