/*
 * Reads arguments and results of complex functions from standard input, as host/complex_oracle.c writes
 * them, and prints the greatest error of a part of each function's results, in units in the last place,
 * and of the whole, in those of its magnitude. Fails when one is above its bound.
 */
#include "measure.h"

#include <complex.h>
#include <stdlib.h>

struct function {
    const char *name;
    double complex (*wide)(double complex);
    float complex (*narrow)(float complex);
};

#define F(name) {#name, name, name##f}
static const struct function functions[] = {F(cexp),  F(clog),  F(csqrt),  F(csin),   F(ccos),
                                            F(ctan),  F(csinh), F(ccosh),  F(ctanh),  F(casin),
                                            F(cacos), F(catan), F(casinh), F(cacosh), F(catanh)};

static const struct function *find(const char *name)
{
    for (size_t i = 0; i < sizeof functions / sizeof *functions; ++i)
        if (strcmp(functions[i].name, name) == 0) return functions + i;
    printf("no function %s\n", name);
    exit(1);
}

struct errors {
    double part, whole;
};

static struct errors measure_one(const struct function *f, const struct complex_point *p, int is_float)
{
    double complex z = is_float ? (double complex)f->narrow(CMPLXF(p->x, p->y)) : f->wide(CMPLX(p->x, p->y));
    double got[2] = {creal(z), cimag(z)};
    double larger = fabs(p->result[0]) > fabs(p->result[1]) ? p->result[0] : p->result[1];
    struct errors errors = {0, 0};
    for (int i = 0; i < 2; ++i) {
        if (got[i] != got[i] || got[i] - got[i] != 0) return (struct errors){1e300, 1e300};
        int unit = unit_exponent(p->result[i], is_float), whole_unit = unit_exponent(larger, is_float);
        double part = fabs(ldexp(got[i] - p->result[i], -unit) - p->rest[i]);
        double scaled = ldexp(part, unit - whole_unit);
        if (part > errors.part) errors.part = part;
        errors.whole += scaled * scaled;
    }
    errors.whole = sqrt(errors.whole);
    return errors;
}

static int measure(const struct header *h)
{
    const struct function *f = find(h->name);
    struct complex_point point, at = {0, 0, {0, 0}, {0, 0}}, whole_at = at;
    struct errors greatest = {-1, -1};
    for (int i = 0; i < h->count; ++i) {
        if (fread(&point, sizeof point, 1, stdin) != 1) {
            printf("%s: the points end early\n", h->name);
            exit(1);
        }
        struct errors errors = measure_one(f, &point, h->is_float);
        if (errors.part > greatest.part) greatest.part = errors.part, at = point;
        if (errors.whole > greatest.whole) greatest.whole = errors.whole, whole_at = point;
    }
    int ok = greatest.part <= h->bound && greatest.whole <= 1.5 && h->count > 0;
    printf("%-6s %-7s %.4f at %a + %a i, whole %.4f at %a + %a i, of %d points%s\n", h->name,
           h->is_float ? "float" : "double", greatest.part, at.x, at.y, greatest.whole, whole_at.x,
           whole_at.y, (int)h->count, ok ? "" : "  ABOVE THE BOUND");
    return ok;
}

int main(void) { return measure_functions(measure); }
