/*
 * The oracle of the complex functions' sweep, by MPC: for every function and precision a struct header
 * and its complex points, as programs/complex_accuracy.c reads them.
 *
 *   complex_oracle POINTS [FUNCTION]
 *
 * The parts of arguments are random, of one size or of sizes of their own, and close to the branch
 * points.
 */
#include "arguments.h"

#include <mpc.h>

typedef int one_argument(mpc_t, const mpc_t, mpc_rnd_t);

struct function {
    const char *name;
    one_argument *call;
    float bound;
    double limit, float_limit; /* of the parts' magnitudes */
};

static const struct function functions[] = {
    {"cexp", mpc_exp, 1.5, 700, 80},         {"clog", mpc_log, 1.5, 0x1p1000, 1e37},
    {"csqrt", mpc_sqrt, 1, 0x1p1000, 1e37}, {"csin", mpc_sin, 1, 700, 80},
    {"ccos", mpc_cos, 2, 700, 80},         {"ctan", mpc_tan, 1, 300, 40},
    {"csinh", mpc_sinh, 1, 700, 80},       {"ccosh", mpc_cosh, 1, 700, 80},
    {"ctanh", mpc_tanh, 1, 300, 40},       {"casin", mpc_asin, 2, 0x1p100, 1e20},
    {"cacos", mpc_acos, 2, 0x1p100, 1e20},  {"catan", mpc_atan, 2, 0x1p100, 1e20},
    {"casinh", mpc_asinh, 2, 0x1p100, 1e20}, {"cacosh", mpc_acosh, 2, 0x1p100, 1e20},
    {"catanh", mpc_atanh, 2, 0x1p100, 1e20},
};

static mpc_t argument, result;
static mpfr_t part;

static int evaluate(const struct function *f, double x, double y, int is_float, struct complex_point *p)
{
    double greatest = is_float ? 0x1.fffffep127 : 0x1.fffffffffffffp1023;
    double least = is_float ? 0x1p-126 : 0x1p-1000; /* below, bits are lost on the way */
    *p = (struct complex_point){.x = x, .y = y};
    mpc_set_d_d(argument, x, y, MPC_RNDNN);
    f->call(result, argument, MPC_RNDNN);
    for (int i = 0; i < 2; ++i) {
        mpfr_srcptr value = i ? mpc_imagref(result) : mpc_realref(result);
        if (!mpfr_number_p(value)) return 0;
        p->result[i] = mpfr_get_d(value, MPFR_RNDN);
        mpfr_sub_d(part, value, p->result[i], MPFR_RNDN);
        mpfr_mul_2si(part, part, -unit_exponent(p->result[i], is_float), MPFR_RNDN);
        p->rest[i] = mpfr_get_d(part, MPFR_RNDN);
        if (fabs(p->result[i]) > greatest || (p->result[i] != 0 && fabs(p->result[i]) < least)) return 0;
    }
    return 1;
}

/* Of all sizes; near 1 or -1; near the other part's size; or plainly between -4 and 4. */
static double random_part(double limit, double other)
{
    double sign = next_random() & 1 ? 1 : -1;
    switch (next_random() % 4) {
    case 0: return random_in((struct range){-limit, limit}, 0);
    case 1: return sign * (1 + random_in((struct range){-0.5, 0.5}, 0));
    case 2: if (other != 0 && fabs(other) < limit) return sign * other * (0.5 + unit_random()); /* fall through */
    default: return 8 * unit_random() - 4;
    }
}

static void sweep(const struct function *f, int is_float, int wanted)
{
    struct complex_point *points = malloc((size_t)wanted * sizeof *points);
    struct header header = {.arguments = 1, .is_float = is_float, .bound = is_float ? 0.51f : f->bound};
    double limit = is_float ? f->float_limit : f->limit;
    for (int i = 0; i < wanted; ++i) {
        double x = random_part(limit, 0), y = random_part(limit, x);
        if (is_float) x = to_float(x), y = to_float(y);
        header.count += evaluate(f, x, y, is_float, points + header.count);
    }
    strcpy(header.name, f->name);
    fwrite(&header, sizeof header, 1, stdout);
    fwrite(points, sizeof *points, (size_t)header.count, stdout);
    free(points);
}

int main(int argc, char **argv)
{
    int wanted = argc > 1 ? atoi(argv[1]) : 1000;
    mpc_init2(argument, 200);
    mpc_init2(result, 200);
    mpfr_init2(part, 200);
    for (size_t i = 0; i < sizeof functions / sizeof *functions; ++i) {
        if (argc > 2 && strcmp(argv[2], functions[i].name) != 0) continue;
        sweep(functions + i, 0, wanted);
        sweep(functions + i, 1, wanted);
    }
    return fflush(stdout) != 0;
}
