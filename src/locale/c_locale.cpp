// The built-in "C" locale and what the library exports of it.

#include "locale/locale_record.h"

#include <limits.h>
#include <stdlib.h>

namespace vexrt {

namespace {

constexpr char weekdays[] =
    ":Sun:Sunday:Mon:Monday:Tue:Tuesday:Wed:Wednesday:Thu:Thursday:Fri:Friday:Sat:Saturday";
constexpr char months[] = ":Jan:January:Feb:February:Mar:March:Apr:April:May:May:Jun:June:Jul:July"
                          ":Aug:August:Sep:September:Oct:October:Nov:November:Dec:December";
constexpr char formats[] = "|%a %b %e %T %Y|%m/%d/%y|%H:%M:%S|%I:%M:%S %p";

constexpr lconv c_conventions() {
    lconv c = {};
    char *empty = const_cast<char *>("");
    c.currency_symbol = c.int_curr_symbol = c.mon_decimal_point = c.mon_grouping = empty;
    c.mon_thousands_sep = c.negative_sign = c.positive_sign = empty;
    c.frac_digits = c.int_frac_digits = CHAR_MAX;
    c.n_cs_precedes = c.n_sep_by_space = c.n_sign_posn = CHAR_MAX;
    c.p_cs_precedes = c.p_sep_by_space = c.p_sign_posn = CHAR_MAX;
    c.int_n_cs_precedes = c.int_n_sep_by_space = c.int_n_sign_posn = CHAR_MAX;
    c.int_p_cs_precedes = c.int_p_sep_by_space = c.int_p_sign_posn = CHAR_MAX;
    c.decimal_point = const_cast<char *>(".");
    c.grouping = c.thousands_sep = empty;
    return c;
}

constexpr LocaleRecord make_c_locale() {
    LocaleRecord c = {};
    c.name = "C";
    c.classes = c_classes.zero();
    c.lower_case = c_lower_case.zero();
    c.upper_case = c_upper_case.zero();
    c.wide_mappings = c_wide_mappings;
    c.wide_classes = c_wide_classes;
    c.decode[0] = c.encode[0] = c_state_table.of;
    c.multibyte_max = multibyte_limit;
    c.am_pm = ":AM:PM";
    for (const char *&list : c.weekdays) list = weekdays;
    for (const char *&list : c.months) list = months;
    for (const char *&list : c.formats) list = formats;
    c.era = c.alternative_digits = c.zone_rule = c.zone = "";
    c.conventions = c_conventions();
    return c;
}

} // namespace

constinit LocaleRecord c_locale = make_c_locale();

} // namespace vexrt

constinit lconv __locale = vexrt::c_conventions();
constinit size_t __mbcurmax = vexrt::multibyte_limit;

extern "C" lconv *localeconv() { return &__locale; }
