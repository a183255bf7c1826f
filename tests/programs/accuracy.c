/*
 * Reads arguments and results from standard input, as host/math_oracle.c writes them, calls the
 * functions and prints the greatest error of each, in units in the last place, and where it is.
 * Fails when one is above the bound that came with it.
 */
#include "measure.h"

#include <stdlib.h>

typedef double one_double(double);
typedef double two_doubles(double, double);
typedef float one_float(float);
typedef float two_floats(float, float);

struct function {
    const char *name;
    one_double *one;
    one_float *one_f;
    two_doubles *two;
    two_floats *two_f;
};

#define ONE(name) {#name, name, name##f, NULL, NULL}
#define TWO(name) {#name, NULL, NULL, name, name##f}
static const struct function functions[] = {
    ONE(exp), ONE(exp2), ONE(expm1), ONE(log), ONE(log2), ONE(log10), ONE(log1p), TWO(pow),
    ONE(sin), ONE(cos), ONE(tan), ONE(asin), ONE(acos), ONE(atan), TWO(atan2),
    ONE(sinh), ONE(cosh), ONE(tanh), ONE(asinh), ONE(acosh), ONE(atanh),
    ONE(sqrt), ONE(cbrt), TWO(hypot),
    ONE(erf), ONE(erfc), ONE(tgamma), ONE(lgamma),
};

static double call(const struct function *f, const struct header *h, const struct point *p)
{
    if (h->is_float)
        return h->arguments == 1 ? f->one_f((float)p->x) : f->two_f((float)p->x, (float)p->y);
    return h->arguments == 1 ? f->one(p->x) : f->two(p->x, p->y);
}

/* Close to the zeros of lgamma between the negative integers the unit is that of 1. */
static double error_of(double got, const struct point *p, int is_float, int has_far_zeros)
{
    if (got != got || got - got != 0) return 1e300;
    int unit = unit_exponent(p->result, is_float);
    double error = fabs(ldexp(got - p->result, -unit) - p->rest);
    int by_one = has_far_zeros && p->x < 0 && fabs(p->result) < 1;
    return by_one ? ldexp(error, unit - unit_exponent(1, is_float)) : error;
}

static const struct function *find(const char *name)
{
    for (size_t i = 0; i < sizeof functions / sizeof *functions; ++i)
        if (strcmp(functions[i].name, name) == 0) return functions + i;
    printf("no function %s\n", name);
    exit(1);
}

static int measure(const struct header *h)
{
    static struct point points[1024];
    const struct function *f = find(h->name);
    struct point worst = {0, 0, 0, 0};
    double greatest = -1;
    for (int left = h->count; left > 0;) {
        size_t wanted = left < 1024 ? (size_t)left : 1024;
        if (fread(points, sizeof *points, wanted, stdin) != wanted) {
            printf("%s: the points end early\n", h->name);
            exit(1);
        }
        left -= (int)wanted;
        for (size_t i = 0; i < wanted; ++i) {
            double error = error_of(call(f, h, points + i), points + i, h->is_float,
                                    f->one == lgamma);
            if (error > greatest) greatest = error, worst = points[i];
        }
    }
    int ok = greatest <= h->bound && h->count > 0;
    char at[64];
    sprintf(at, h->arguments == 1 ? "%a" : "%a, %a", worst.x, worst.y);
    printf("%-6s %-7s %8.4f  at %-46s of %d points%s\n", h->name, h->is_float ? "float" : "double",
           greatest, at, (int)h->count, ok ? "" : "  ABOVE THE BOUND");
    fflush(stdout);
    return ok;
}

int main(void) { return measure_functions(measure); }
