/* <locale.h> - C11 7.11: localisation. */
#ifndef _LOCALE_H
#define _LOCALE_H

#include <_vexrt.h>

/* The categories are bits and can be combined. */
#define LC_COLLATE 1
#define LC_CTYPE 2
#define LC_MONETARY 4
#define LC_NUMERIC 8
#define LC_TIME 16
#define LC_ALL 31

/* How numbers and amounts of money are written. The members stand in this library's own order. */
struct lconv {
    char *currency_symbol;
    char *int_curr_symbol;
    char *mon_decimal_point;
    char *mon_grouping;
    char *mon_thousands_sep;
    char *negative_sign;
    char *positive_sign;
    char frac_digits;
    char n_cs_precedes;
    char n_sep_by_space;
    char n_sign_posn;
    char p_cs_precedes;
    char p_sep_by_space;
    char p_sign_posn;
    char int_frac_digits;
    char int_n_cs_precedes;
    char int_n_sep_by_space;
    char int_n_sign_posn;
    char int_p_cs_precedes;
    char int_p_sep_by_space;
    char int_p_sign_posn;
    char *decimal_point;
    char *grouping;
    char *thousands_sep;
};

_VEXRT_BEGIN

/* The conventions of the "C" locale. */
_VEXRT_DATA struct lconv __locale;

/*
 * Selects a locale for the categories whose bits are in `category`, for the calling thread alone. Names
 * are "C" (case matters), the two-letter country code of an installed locale in either case ("US",
 * "de"), "" for the user's default, and what the function returned before: components separated by
 * semicolons, such as "C;numeric:DE", of which a category takes the one with its prefix ("collate:",
 * "ctype:", "monetary:", "numeric:", "time:"), else the first without any.
 *
 * Returns the name of the thread's whole locale, valid until the next change; with a null `locale` it
 * changes nothing and, unlike ISO C, returns the same whatever `category` is. Null for other bits in
 * `category`, a name that is none, and without memory; nothing has changed then.
 */
char *setlocale(int category, const char *locale);

/* Returns the address of __locale: the conventions of the "C" locale, whatever locale is in force.
   Differs from ISO C in that it never follows the current locale. */
struct lconv *localeconv(void);

_VEXRT_END

#endif
