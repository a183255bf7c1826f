/*
 * Writes decimal texts and the numbers that they stand for, as the multiple-precision library rounds
 * them: decimal_cases COUNT SEED. One record a case: the length of the text in a byte, the text, the
 * double and the float, each to nearest, ties to even, with gradual underflow.
 *
 * Texts are random digits with random exponents, midpoints between two neighbouring numbers cut to the
 * digits that are kept and moved by a unit in the last of them, 17-digit spellings, subnormals, and
 * numbers about both limits. All have at most 27 digits; of those with more than 9 the float is that of
 * the first nine.
 */
#include <mpfr.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static uint64_t state;
static uint64_t next(void)
{
    state ^= state << 13;
    state ^= state >> 7;
    return state ^= state << 17;
}

static mpfr_t exact, rounded;

/* `text` rounded to a format: its precision and its range of exponents as the library counts them. */
static double round_to(const char *text, int bits, int least, int greatest)
{
    mpfr_set_default_prec(bits);
    mpfr_set_prec(rounded, bits);
    mpfr_set_emin(least);
    mpfr_set_emax(greatest);
    int order = mpfr_strtofr(rounded, text, NULL, 10, MPFR_RNDN);
    mpfr_subnormalize(rounded, order, MPFR_RNDN);
    double value = mpfr_get_d(rounded, MPFR_RNDN);
    mpfr_set_emin(mpfr_get_emin_min());
    mpfr_set_emax(mpfr_get_emax_max());
    return value;
}

/* A midpoint between a random number and its neighbour, `digits` digits of it, a unit up or down. */
static int midpoint(char *text, int digits)
{
    uint64_t bits = next() & 0x7FFFFFFFFFFFFFFF;
    if (next() % 4 == 0) bits &= 0x001FFFFFFFFFFFFF;
    if (digits <= 9) {
        uint32_t narrow = (uint32_t)bits & 0x7FFFFFFF;
        float value;
        memcpy(&value, &narrow, 4);
        if (value != value || value > 1e38f) return 0;
        mpfr_set_d(exact, value, MPFR_RNDN);
        narrow += 1;
        memcpy(&value, &narrow, 4);
        mpfr_add_d(exact, exact, value, MPFR_RNDN);
    } else {
        double value;
        memcpy(&value, &bits, 8);
        if (value != value || value > 1e308) return 0;
        mpfr_set_d(exact, value, MPFR_RNDN);
        bits += 1;
        memcpy(&value, &bits, 8);
        mpfr_add_d(exact, exact, value, MPFR_RNDN);
    }
    mpfr_div_2ui(exact, exact, 1, MPFR_RNDN);
    mpfr_snprintf(text, 64, "%.*RZe", digits - 1, exact);
    char *last = strchr(text, 'e') - 1;
    int move = (int)(next() % 3) - 1;
    if (*last + move >= '0' && *last + move <= '9') *last = (char)(*last + move);
    return 1;
}

static void random_digits(char *text, int digits)
{
    int point = (int)(next() % (unsigned)(digits + 1));
    for (int i = 0; i < digits; ++i) {
        if (i == point) *text++ = '.';
        *text++ = (char)('0' + next() % 10);
    }
    int exponent = next() % 2 ? (int)(next() % 40) - 20 : (int)(next() % 720) - 370;
    sprintf(text, "e%d", exponent);
}

static void make_text(char *text)
{
    static const char *const about_limits[] = {"1.797693134862315", "2.470328229206232", "4.940656458412465",
                                               "2.225073858507201", "3.402823", "1.175494", "7.006492"};
    static const int powers[] = {308, -324, -324, -308, 38, -38, -46};
    int digits = 1 + (int)(next() % 27), which;
    switch (next() % 5) {
    case 0: random_digits(text, digits); return;
    case 1:
        while (!midpoint(text, digits)) ;
        return;
    case 2:
        while (!midpoint(text, 27)) ;
        return;
    case 3:
        while (!midpoint(text, 17)) ;
        return;
    default:
        which = (int)(next() % 7);
        sprintf(text, "%s%0*lue%d", about_limits[which], which < 4 ? 4 : 2,
                (unsigned long)(next() % (which < 4 ? 10000 : 100)), powers[which]);
    }
}

/* The text with the digits behind the ninth significant one taken as zeros. */
static void keep_nine(const char *from, char *to)
{
    int seen = 0;
    for (; *from && *from != 'e'; ++from) {
        if (*from != '.' && (seen || *from != '0')) ++seen;
        *to++ = (char)(seen > 9 && *from != '.' ? '0' : *from);
    }
    strcpy(to, from);
}

/* An integer digit in the tenth place would round: such texts are left out. */
static int rounds_for_float(const char *text)
{
    int digits = 0;
    for (; *text && *text != 'e' && *text != '.'; ++text)
        if (digits || *text != '0') ++digits;
    return digits > 9;
}

int main(int argc, char **argv)
{
    unsigned long count = strtoul(argv[1], NULL, 10);
    state = strtoull(argv[2], NULL, 10) * 2 + 88172645463325253ULL;
    mpfr_init2(exact, 2400);
    mpfr_init(rounded);
    while (count) {
        char text[80], short_text[80];
        make_text(text);
        if (rounds_for_float(text)) continue;
        keep_nine(text, short_text);
        double wide = round_to(text, 53, -1073, 1024);
        float narrow = (float)round_to(short_text, 24, -148, 128);
        unsigned char length = (unsigned char)strlen(text);
        fwrite(&length, 1, 1, stdout);
        fwrite(text, 1, length, stdout);
        fwrite(&wide, 8, 1, stdout);
        fwrite(&narrow, 4, 1, stdout);
        --count;
    }
    return argc != 3;
}
