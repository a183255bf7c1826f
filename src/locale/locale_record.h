// The record behind a locale: one for the built-in "C" locale, one for every loaded locale, and a
// merged copy for each thread that has changed a category. Everything that depends on the locale
// reads `thread_record().locale`.
#pragma once

#include <locale.h>
#include <stddef.h>

namespace vexrt {

// Bits of the narrow classification table.
enum CharacterClass : unsigned short {
    class_digit = 0x001,
    class_hex_digit = 0x002,
    class_lower = 0x004,
    class_upper = 0x008,
    class_control = 0x010,
    class_space = 0x020, // white space other than the blank
    class_blank = 0x040, // ' '
    class_punctuation = 0x080,
    class_tab = 0x100,
    class_white_space = class_space | class_blank,
};

// A table indexed by what the ctype functions take, EOF to 255, and its entry for 0.
template <typename Entry>
struct ByteTable {
    Entry entries[257];
    constexpr const Entry *zero() const { return entries + 1; }
};

// A named class or case mapping of wide characters: a run of ranges, each with the value that its
// characters get (1 for a class, what is added for a mapping). A list of properties ends with one
// that has no name.
struct WideRange {
    unsigned short low, high, value;
};
struct WideProperty {
    const char *name;
    const WideRange *ranges;
    unsigned range_count;
};

// A table of a multibyte encoding that is described by states: 256 entries, see multibyte.cpp.
struct StateEntries {
    unsigned short of[256];
};
using StateTable = const unsigned short *;
constexpr unsigned state_table_count = 16;

struct LocaleRecord {
    const char *name; // as the caller spelt it
    LocaleRecord *next;

    // Collate. The first word of `wide_collation` is 1 where the system collates.
    unsigned long lcid;
    StateTable narrow_collation[state_table_count];
    StateTable wide_collation[state_table_count];

    // Ctype. The narrow tables start at index -1. The first word of `decode` selects the mode of
    // decoder and encoder.
    unsigned code_page;
    const unsigned short *classes;
    const short *lower_case;
    const short *upper_case;
    const WideProperty *wide_mappings;
    const WideProperty *wide_classes;
    StateTable decode[state_table_count];
    StateTable encode[state_table_count];
    unsigned char multibyte_max; // bytes in one character

    // Time. Lists whose first character separates their items.
    const char *am_pm;
    const char *weekdays[3];
    const char *months[3];
    const char *formats[10];
    const char *era;
    const char *alternative_digits;
    const char *zone_rule;
    const char *zone;

    // Monetary and numeric.
    lconv conventions;
};
static_assert(offsetof(LocaleRecord, am_pm) == offsetof(LocaleRecord, multibyte_max) + 4);
static_assert(offsetof(LocaleRecord, conventions) == offsetof(LocaleRecord, am_pm) + 21 * 4);
static_assert(offsetof(lconv, frac_digits) == 7 * 4);
static_assert(offsetof(lconv, int_frac_digits) == 7 * 4 + 7);
static_assert(offsetof(lconv, int_p_sign_posn) == 7 * 4 + 13);
static_assert(offsetof(lconv, decimal_point) == 11 * 4);
static_assert(sizeof(lconv) == 14 * 4);

// The built-in locale: usable from the first instruction on, head of the list of all locales.
extern LocaleRecord c_locale;

// The parts of it that stand in other files.
extern const ByteTable<unsigned short> c_classes;
extern const ByteTable<short> c_lower_case, c_upper_case;
extern const WideProperty c_wide_mappings[], c_wide_classes[];
extern const StateEntries c_state_table;

// What no character of any locale exceeds: the value of `__mbcurmax`.
constexpr size_t multibyte_limit = 3;

} // namespace vexrt
