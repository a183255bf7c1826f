/*
 * The oracle of the accuracy sweep: for every function and precision, arguments and what MPFR says of
 * them. Runs on the host; writes to standard output what programs/accuracy.c reads:
 *
 *   a struct header, then `count` struct points
 *
 *   math_oracle POINTS [FUNCTION]
 *
 * Arguments are random in the ranges that the table gives, half of them uniform in value and half in
 * the exponent, then the table's hard cases, powers of two and their neighbours.
 */
#include "arguments.h"

#include <mpfr.h>

enum { precision = 140 };

typedef int one_argument(mpfr_t, const mpfr_t, mpfr_rnd_t);
typedef int two_arguments(mpfr_t, const mpfr_t, const mpfr_t, mpfr_rnd_t);

struct function {
    const char *name;
    one_argument *one;
    two_arguments *two;
    float bound, float_bound;
    struct range x[3], y, float_x; /* float_x: where that of double is too wide */
    const double *hard;
};

static int log_gamma(mpfr_t result, const mpfr_t x, mpfr_rnd_t round)
{
    int sign;
    return mpfr_lgamma(result, &sign, x, round);
}

/* Doubles close to multiples of pi/2 of all sizes are made by make_near_multiples(). */
static double near_multiples[2200];

static const double near_one[] = {1, 0x1.fffffffffffffp-1, 0x1.0000000000001p0, 0x1.0000000000003p0,
                                  0x1.ffffffffffffp-1, 0x1.00001p0, 0x1.fp-1, 0x1.08p0, 0x1p-1074,
                                  0x1.fffffffffffffp-1023, 0x1.fffffffffffffp1023, 0};
static const double exponents[] = {709.78, 709.7827128933839, -708.39, -745.13, -745.1332191019411, -744.4,
                                   18, 18.000000000000004, 0x1p-30, -0x1p-52, 1023.9999999999999, -1074.2, 0};
static const double units[] = {1, -1, 0.5, -0.5, 0x1.fffffffffffffp-2, 0x1.0000000000001p-1,
                               0x1.fffffffffffffp-1, -0x1.fffffffffffffp-1, 0x1p-27, 0x1p-1074, 0};

static const struct function functions[] = {
    {"exp", mpfr_exp, 0, 2.0f, 0.51f, {{-745, 709.78}, {-1, 1}}, {0, 0}, {-103, 88.7}, exponents},
    {"exp2", mpfr_exp2, 0, 0.51f, 0.51f, {{-1075, 1023.99}, {-1, 1}}, {0, 0}, {-149, 127.99}, exponents},
    {"expm1", mpfr_expm1, 0, 0.75f, 0.51f, {{-45, 709.78}, {-1, 1}}, {0, 0}, {-20, 88.7}, exponents},
    {"log", mpfr_log, 0, 0.53f, 0.51f, {{0x1p-1074, 0x1.fffp1023}, {0.5, 2}, {0.99, 1.01}}, {0, 0}, {0x1p-149, 3e38}, near_one},
    {"log2", mpfr_log2, 0, 0.53f, 0.51f, {{0x1p-1074, 0x1.fffp1023}, {0.5, 2}, {0.99, 1.01}}, {0, 0}, {0x1p-149, 3e38}, near_one},
    {"log10", mpfr_log10, 0, 0.53f, 0.51f, {{0x1p-1074, 0x1.fffp1023}, {0.5, 2}, {0.99, 1.01}}, {0, 0}, {0x1p-149, 3e38}, near_one},
    {"log1p", mpfr_log1p, 0, 0.7f, 0.51f, {{-0.9999999, 0x1.fffp1023}, {-0.5, 1}, {-0.01, 0.01}}, {0, 0}, {-0.9999999, 3e38}, 0},
    {"pow", 0, mpfr_pow, 0.53f, 0.51f, {{0x1p-1074, 0x1.fffp1023}, {0.25, 4}, {0.999, 1.001}}, {-300, 300}, {0x1p-149, 3e38}, 0},
    {"sin", mpfr_sin, 0, 0.51f, 0.51f, {{-0x1.fffp1023, 0x1.fffp1023}, {-10, 10}, {-1e5, 1e5}}, {0, 0}, {-3e38, 3e38}, near_multiples},
    {"cos", mpfr_cos, 0, 0.51f, 0.51f, {{-0x1.fffp1023, 0x1.fffp1023}, {-10, 10}, {-1e5, 1e5}}, {0, 0}, {-3e38, 3e38}, near_multiples},
    {"tan", mpfr_tan, 0, 0.52f, 0.51f, {{-0x1.fffp1023, 0x1.fffp1023}, {-10, 10}, {-1e5, 1e5}}, {0, 0}, {-3e38, 3e38}, near_multiples},
    {"asin", mpfr_asin, 0, 0.7f, 0.51f, {{-1, 1}, {0.45, 0.6}, {0.99, 1}}, {0, 0}, {-1, 1}, units},
    {"acos", mpfr_acos, 0, 0.7f, 0.51f, {{-1, 1}, {0.45, 0.6}, {0.99, 1}}, {0, 0}, {-1, 1}, units},
    {"atan", mpfr_atan, 0, 0.6f, 0.51f, {{-0x1.fffp1023, 0x1.fffp1023}, {-2, 2}, {-100, 100}}, {0, 0}, {-3e38, 3e38}, units},
    {"atan2", 0, mpfr_atan2, 0.6f, 0.51f, {{-0x1.fffp1023, 0x1.fffp1023}, {-4, 4}, {-1e-300, 1e-300}}, {-4, 4}, {-3e38, 3e38}, 0},
    {"sinh", mpfr_sinh, 0, 3.6f, 0.51f, {{-710.4, 710.4}, {-2, 2}, {18, 19}}, {0, 0}, {-89, 89}, exponents},
    {"cosh", mpfr_cosh, 0, 3.6f, 0.51f, {{-710.4, 710.4}, {-2, 2}, {18, 19}}, {0, 0}, {-89, 89}, exponents},
    {"tanh", mpfr_tanh, 0, 0.7f, 0.51f, {{-23, 23}, {-1, 1}}, {0, 0}, {-12, 12}, units},
    {"asinh", mpfr_asinh, 0, 0.65f, 0.51f, {{-0x1.fffp1023, 0x1.fffp1023}, {-2, 2}}, {0, 0}, {-3e38, 3e38}, units},
    {"acosh", mpfr_acosh, 0, 0.65f, 0.51f, {{1, 0x1.fffp1023}, {1, 2}, {1, 1.001}}, {0, 0}, {1, 3e38}, 0},
    {"atanh", mpfr_atanh, 0, 0.7f, 0.51f, {{-1, 1}, {-0.1, 0.1}, {0.99, 1}}, {0, 0}, {-1, 1}, 0},
    {"sqrt", mpfr_sqrt, 0, 0.5f, 0.5f, {{0x1p-1074, 0x1.fffp1023}}, {0, 0}, {0x1p-149, 3e38}, near_one},
    {"cbrt", mpfr_cbrt, 0, 0.53f, 0.51f, {{-0x1.fffp1023, 0x1.fffp1023}, {1, 8}}, {0, 0}, {-3e38, 3e38}, near_one},
    {"erf", mpfr_erf, 0, 1.2f, 0.51f, {{-6, 6}, {-1, 1}}, {0, 0}, {-5, 5}, units},
    {"erfc", mpfr_erfc, 0, 1.0f, 0.51f, {{-6, 27.22}, {-1, 1}}, {0, 0}, {-5, 10}, units},
    {"tgamma", mpfr_gamma, 0, 1.7f, 0.51f, {{-184, 171.62}, {-5, 12}}, {0, 0}, {-43, 35}, units},
    {"lgamma", log_gamma, 0, 1.5f, 0.51f, {{0x1p-1074, 0x1p1000}, {0, 4}, {-20, 20}}, {0, 0}, {0x1p-149, 1e36}, near_one},
    {"hypot", 0, mpfr_hypot, 0.53f, 0.51f, {{-0x1.fffp1022, 0x1.fffp1022}, {-4, 4}, {-1e-300, 1e-300}}, {-4, 4}, {-1e38, 1e38}, 0},
};

/* For each exponent and each precision, the number that is closest to a multiple of pi/2, from the
   convergents of the continued fraction of pi/2 over a power of two. */
static void make_near_multiples(int bits, int greatest)
{
    unsigned count = 0;
    mpfr_t ratio, part, inverse;
    mpz_t p0, p1, q0, q1, a, t;
    mpfr_inits2(2500, ratio, part, inverse, (mpfr_ptr)0);
    mpz_inits(p0, p1, q0, q1, a, t, (mpz_ptr)0);
    for (int exponent = -bits; exponent < greatest - bits + 1; ++exponent) {
        mpfr_const_pi(ratio, MPFR_RNDN);
        mpfr_div_2si(ratio, ratio, 1 + exponent, MPFR_RNDN);
        mpz_set_ui(p0, 0), mpz_set_ui(p1, 1), mpz_set_ui(q0, 1), mpz_set_ui(q1, 0);
        /* p/q of ratio: p 2^exponent is close to q pi/2; the last p of at most `bits` bits. */
        for (;;) {
            mpfr_floor(part, ratio);
            mpfr_get_z(a, part, MPFR_RNDN);
            mpz_mul(t, a, p1), mpz_add(t, t, p0), mpz_swap(p0, p1), mpz_swap(p1, t);
            mpz_mul(t, a, q1), mpz_add(t, t, q0), mpz_swap(q0, q1), mpz_swap(q1, t);
            if (mpz_sizeinbase(p1, 2) > (size_t)bits) break;
            mpfr_sub(ratio, ratio, part, MPFR_RNDN);
            mpfr_ui_div(ratio, 1, ratio, MPFR_RNDN);
        }
        if (mpz_sgn(p0) > 0) near_multiples[count++] = ldexp(mpz_get_d(p0), exponent);
    }
    near_multiples[count] = 0;
    mpfr_clears(ratio, part, inverse, (mpfr_ptr)0);
    mpz_clears(p0, p1, q0, q1, a, t, (mpz_ptr)0);
}

static mpfr_t x_value, y_value, result, rest;

/* Nothing is written for arguments without a finite result. */
static int evaluate(const struct function *f, int is_float, double x, double y, struct point *point)
{
    if (is_float) x = to_float(x), y = to_float(y);
    if (x != x || x - x != 0 || y - y != 0) return 0;
    mpfr_set_d(x_value, x, MPFR_RNDN);
    mpfr_set_d(y_value, y, MPFR_RNDN);
    if (f->one) f->one(result, x_value, MPFR_RNDN);
    else f->two(result, x_value, y_value, MPFR_RNDN);
    if (!mpfr_number_p(result)) return 0;
    double greatest = is_float ? 0x1.fffffep127 : 0x1.fffffffffffffp1023;
    double nearest = mpfr_get_d(result, MPFR_RNDN);
    if (fabs(nearest) > greatest) return 0;
    mpfr_sub_d(rest, result, nearest, MPFR_RNDN);
    mpfr_mul_2si(rest, rest, -unit_exponent(nearest, is_float), MPFR_RNDN);
    *point = (struct point){x, y, nearest, mpfr_get_d(rest, MPFR_RNDN)};
    return 1;
}

static struct point *points;
static int32_t count;

static void add(const struct function *f, int is_float, double x, double y)
{
    count += evaluate(f, is_float, x, y, points + count);
}

static void add_around(const struct function *f, int is_float, double x, struct range y)
{
    double unit = is_float ? 0x1p-23 : 0x1p-52;
    for (int i = -2; i <= 2; ++i) {
        double moved = x + i * unit * fabs(x);
        add(f, is_float, moved, is_empty(y) ? 0 : random_in(y, 1));
        if (f->two) add(f, is_float, random_in(y, 0), moved);
    }
}

static void sweep(const struct function *f, int is_float, int wanted)
{
    struct range ranges[3];
    int range_count = 0;
    for (int i = 0; i < 3 && !is_empty(f->x[i]); ++i) ranges[range_count++] = f->x[i];
    if (is_float && !is_empty(f->float_x)) ranges[0] = f->float_x;
    points = malloc(((size_t)wanted + 40000) * sizeof *points);
    count = 0;
    for (int i = 0; i < wanted; ++i) {
        struct range r = ranges[(i / 2) % range_count];
        struct range y = f->y;
        if (f->two && f->one == 0 && r.low < 0) y = i & 4 ? r : f->y; /* both of the same size */
        add(f, is_float, random_in(r, (unsigned)i), f->two ? random_in(y, (unsigned)(i >> 3)) : 0);
    }
    if (f->hard == near_multiples) make_near_multiples(is_float ? 24 : 53, is_float ? 128 : 1024);
    for (const double *x = f->hard; x && *x; ++x) {
        add(f, is_float, *x, 0);
        add(f, is_float, -*x, 0);
    }
    for (int exponent = is_float ? -149 : -1074; exponent < (is_float ? 128 : 1024); exponent += 3) {
        add_around(f, is_float, ldexp(1, exponent), f->y);
        add_around(f, is_float, -ldexp(1, exponent), f->y);
    }
    struct header header = {.arguments = f->two ? 2 : 1, .is_float = is_float, .count = count,
                            .bound = is_float ? f->float_bound : f->bound};
    strcpy(header.name, f->name);
    fwrite(&header, sizeof header, 1, stdout);
    fwrite(points, sizeof *points, (size_t)count, stdout);
    free(points);
}

int main(int argc, char **argv)
{
    int wanted = argc > 1 ? atoi(argv[1]) : 1000;
    mpfr_inits2(precision, x_value, y_value, result, rest, (mpfr_ptr)0);
    for (size_t i = 0; i < sizeof functions / sizeof *functions; ++i) {
        if (argc > 2 && strcmp(argv[2], functions[i].name) != 0) continue;
        sweep(functions + i, 0, wanted);
        sweep(functions + i, 1, wanted);
    }
    return fflush(stdout) != 0;
}
