/* Classes and case in the "C" locale: every character against the lists that define the classes. */
#include "check.h"

#include <ctype.h>
#include <limits.h>
#include <locale.h>
#include <stdlib.h>
#include <wctype.h>

int __iswctype(wint_t wc, wctype_t desc);

#define LOWER "abcdefghijklmnopqrstuvwxyz"
#define UPPER "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
#define DIGITS "0123456789"
#define PUNCT "!\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~"
#define CONTROL                                                                                    \
    "\1\2\3\4\5\6\7\10\11\12\13\14\15\16\17\20\21\22\23\24\25\26\27\30\31\32\33\34\35\36\37"

/* `wide_members` where the wide class differs. */
static const struct {
    const char *name, *members, *wide_members;
    int (*test)(int);
    int (*wide_test)(wint_t);
    int bits; /* of the result for the first member */
} classes[] = {
    {"alnum", "A" LOWER UPPER DIGITS, 0, isalnum, iswalnum, 0x08},
    {"alpha", "A" LOWER UPPER, 0, isalpha, iswalpha, 0x08},
    {"cntrl", CONTROL "\x7F", CONTROL, iscntrl, iswcntrl, 0x10},
    {"digit", DIGITS, 0, isdigit, iswdigit, 0x01},
    {"graph", LOWER UPPER DIGITS PUNCT, 0, isgraph, iswgraph, 0x04},
    {"lower", LOWER, 0, islower, iswlower, 0x04},
    {"print", " " LOWER UPPER DIGITS PUNCT, 0, isprint, iswprint, 0x40},
    {"punct", PUNCT, 0, ispunct, iswpunct, 0x80},
    {"space", "\t\n\v\f\r ", 0, isspace, iswspace, 0x20},
    {"upper", UPPER, 0, isupper, iswupper, 0x08},
    {"xdigit", DIGITS "abcdefABCDEF", 0, isxdigit, iswxdigit, 0x02},
    {"blank", "\t ", 0, isblank, iswblank, 0x100},
};
#define CLASS_COUNT (int)(sizeof classes / sizeof *classes)

static int listed(const char *members, int c) { return c > 0 && c < 0x80 && strchr(members, c); }

static void test_classes(void)
{
    for (int i = 0; i < CLASS_COUNT; ++i) {
        const char *members = classes[i].members;
        check_label = classes[i].name;
        for (int c = -1; c < 256; ++c) {
            int due = listed(members, c) || (c == 0 && classes[i].test == iscntrl);
            CHECK_INT(!!classes[i].test(c), due);
        }
        /* The result is the bit of the class, not 1. */
        CHECK_INT(classes[i].test(members[0]), classes[i].bits);
    }
    CHECK_INT(isblank(' '), 0x40);
    check_label = "";
}

static void test_wide_classes(void)
{
    for (int i = 0; i < CLASS_COUNT; ++i) {
        const char *members = classes[i].wide_members ? classes[i].wide_members : classes[i].members;
        wctype_t number = wctype(classes[i].name);
        int wrong = 0;
        check_label = classes[i].name;
        CHECK_INT(number, i + 1);
        for (unsigned c = 0; c < 65536; ++c) {
            int due = listed(members, (int)c);
            wrong += classes[i].wide_test((wint_t)c) != due;
            wrong += iswctype((wint_t)c, number) != due;
            wrong += __iswctype((wint_t)c, number) != due;
        }
        CHECK_INT(wrong, 0);
    }
    check_label = "";
    CHECK_INT(wctype("_ascii"), 13);
    CHECK_INT(wctype("ALPHA"), 0);
    CHECK_INT(wctype("alph"), 0);
    CHECK_INT(wctype("alphas"), 0);
    CHECK_INT(wctype(""), 0);
    for (unsigned c = 0; c < 65536; c += 5) {
        CHECK_INT(iswascii((wint_t)c), c < 0x80);
        CHECK_INT(iswctype((wint_t)c, 13), c < 0x80);
    }
    static const wctype_t none[] = {0, 14, 15, 0x8000, 0xFFFF};
    for (unsigned i = 0; i < sizeof none / sizeof *none; ++i) {
        CHECK_INT(iswctype(L'a', none[i]), 0);
        CHECK_INT(towctrans(L'a', none[i]), L'a');
        CHECK_INT(towctrans(L'A', none[i]), L'A');
    }
}

static void test_case(void)
{
    int wrong = 0;
    for (int c = -1; c < 256; ++c) {
        const char *upper = c > 0 ? strchr(UPPER, c) : NULL, *lower = c > 0 ? strchr(LOWER, c) : NULL;
        CHECK_INT(tolower(c), upper ? upper[0] + 32 : c);
        CHECK_INT(toupper(c), lower ? lower[0] - 32 : c);
    }
    CHECK_INT(wctrans("tolower"), 1);
    CHECK_INT(wctrans("toupper"), 2);
    CHECK_INT(wctrans("Tolower"), 0);
    CHECK_INT(wctrans("alpha"), 0);
    for (unsigned c = 0; c < 65536; ++c) {
        unsigned lower = c < 128 ? (unsigned)tolower((int)c) : c;
        unsigned upper = c < 128 ? (unsigned)toupper((int)c) : c;
        wint_t wc = (wint_t)c;
        wrong += towlower(wc) != lower || towctrans(wc, wctrans("tolower")) != lower;
        wrong += towupper(wc) != upper || towctrans(wc, wctrans("toupper")) != upper;
    }
    CHECK_INT(wrong, 0);
}

static void test_isascii(void)
{
    static const struct {
        int c, due;
    } cases[] = {{0, 1}, {0x7F, 1}, {0x80, 0}, {0xFF, 0}, {-1, 1}, {INT_MIN, 1}, {INT_MAX, 0}};
    for (unsigned i = 0; i < sizeof cases / sizeof *cases; ++i)
        CHECK_INT(_isascii(cases[i].c), cases[i].due);
}

/* The members stand where programs compiled elsewhere expect them. */
static void test_conventions(void)
{
    char *const *strings = (char *const *)&__locale;
    const char *chars = (const char *)&__locale + 28;
    CHECK(localeconv() == &__locale);
    CHECK_INT(sizeof __locale, 56);
    for (int i = 0; i < 14; ++i) {
        CHECK_INT(chars[i], CHAR_MAX);
        if (i < 7 || i > 10) CHECK_STR(strings[i], i == 11 ? "." : "");
    }
    CHECK(&__locale.int_curr_symbol == strings + 1 && &__locale.decimal_point == strings + 11);
    CHECK(&__locale.p_sign_posn == chars + 6 && &__locale.int_p_cs_precedes == chars + 11);
    CHECK(MB_CUR_MAX == 3 && __mbcurmax == 3);
}

int main(void)
{
    test_classes();
    test_wide_classes();
    test_case();
    test_isascii();
    test_conventions();
    return check_done();
}
