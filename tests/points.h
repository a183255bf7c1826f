/*
 * points.h - what the oracles of the accuracy sweeps write and the programs under test read: for every
 * function and precision a header, then `count` points. A result stands as a double and the rest, in
 * units in the last place of that double in the precision at hand.
 */
#ifndef POINTS_H
#define POINTS_H

#include <math.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

struct header {
    char name[16];
    int32_t arguments, is_float, count;
    float bound; /* units in the last place */
};

struct point {
    double x, y, result, rest;
};

/* Complex functions: x + i y, and both parts of the result. */
struct complex_point {
    double x, y, result[2], rest[2];
};

/* The exponent of the unit in the last place at x. */
static inline int unit_exponent(double x, int is_float)
{
    int exponent;
    frexp(x, &exponent);
    int lowest = is_float ? -149 : -1074, last = exponent - (is_float ? 24 : 53);
    return last < lowest || x == 0 ? lowest : last;
}

#endif
