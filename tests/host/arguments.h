/* Random arguments of all sizes, for the oracles. */
#ifndef ARGUMENTS_H
#define ARGUMENTS_H

#include "../points.h"

#include <stdlib.h>

struct range {
    double low, high;
};

static uint64_t state = 88172645463325252u;
static uint64_t next_random(void)
{
    state ^= state << 13;
    state ^= state >> 7;
    return state ^= state << 17;
}

static double unit_random(void) { return (double)(next_random() >> 11) * 0x1p-53; }

static double from_bits(uint64_t bits)
{
    double value;
    memcpy(&value, &bits, sizeof value);
    return value;
}

static uint64_t bits_of(double value)
{
    uint64_t bits;
    memcpy(&bits, &value, sizeof bits);
    return bits;
}

/* Numbers as integers of the same order. */
static int64_t ordered(double x)
{
    int64_t bits = (int64_t)bits_of(x);
    return bits < 0 ? INT64_MIN - bits : bits;
}
static double from_ordered(int64_t order)
{
    return from_bits((uint64_t)(order < 0 ? INT64_MIN - order : order));
}

static double random_in(struct range r, unsigned i)
{
    if (i & 1) return r.low + unit_random() * (r.high / 2 - r.low / 2) * 2;
    int64_t low = ordered(r.low);
    uint64_t width = (uint64_t)ordered(r.high) - (uint64_t)low;
    return from_ordered((int64_t)((uint64_t)low + next_random() % (width + 1)));
}

static int is_empty(struct range r) { return r.low == 0 && r.high == 0; }

/* gcc 12 drops the conversions of a pair of variables when it may keep them in one register. */
static double to_float(double x)
{
    volatile float narrow = (float)x;
    return narrow;
}

#endif
