// Classes and case of wide characters: named properties, each a few ranges. The number of a
// property, from 1 on, is its wctype_t or wctrans_t.

#include "core/thread_record.h"
#include "locale/locale_record.h"

#include <wctype.h>

namespace vexrt {

namespace {

constexpr WideRange alnum[] = {{'A', 'Z', 1}, {'a', 'z', 1}, {'0', '9', 1}};
constexpr WideRange alpha[] = {{'A', 'Z', 1}, {'a', 'z', 1}};
constexpr WideRange cntrl[] = {{0x01, 0x1F, 1}}; // deliberately not 0 and not 0x7F
constexpr WideRange digit[] = {{'0', '9', 1}};
constexpr WideRange graph[] = {{'!', '~', 1}};
constexpr WideRange lower[] = {{'a', 'z', 1}};
constexpr WideRange print[] = {{' ', '~', 1}};
constexpr WideRange punct[] = {{'!', '/', 1}, {':', '@', 1}, {'[', '`', 1}, {'{', '~', 1}};
constexpr WideRange space[] = {{' ', ' ', 1}, {'\t', '\r', 1}};
constexpr WideRange upper[] = {{'A', 'Z', 1}};
constexpr WideRange xdigit[] = {{'0', '9', 1}, {'a', 'f', 1}, {'A', 'F', 1}};
constexpr WideRange blank[] = {{' ', ' ', 1}, {'\t', '\t', 1}};
constexpr WideRange ascii[] = {{0, 0x7F, 1}};

constexpr WideRange to_lower[] = {{'A', 'Z', 'a' - 'A'}};
constexpr WideRange to_upper[] = {{'a', 'z', static_cast<unsigned short>('A' - 'a')}};

template <unsigned count>
constexpr WideProperty property(const char *name, const WideRange (&ranges)[count]) {
    return {name, ranges, count};
}

} // namespace

constexpr WideProperty c_wide_classes[] = {
    property("alnum", alnum),   property("alpha", alpha),
    property("cntrl", cntrl),   property("digit", digit),
    property("graph", graph),   property("lower", lower),
    property("print", print),   property("punct", punct),
    property("space", space),   property("upper", upper),
    property("xdigit", xdigit), property("blank", blank),
    property("_ascii", ascii),  {},
};

constexpr WideProperty c_wide_mappings[] = {
    property("tolower", to_lower),
    property("toupper", to_upper),
    {},
};

namespace {

enum : wctype_t {
    wide_alnum = 1,
    wide_alpha,
    wide_cntrl,
    wide_digit,
    wide_graph,
    wide_lower,
    wide_print,
    wide_punct,
    wide_space,
    wide_upper,
    wide_xdigit,
    wide_blank,
};
enum : wctrans_t { wide_tolower = 1, wide_toupper };

// Every locale has the built-in lists.
constexpr unsigned class_count = sizeof c_wide_classes / sizeof *c_wide_classes - 1;
constexpr unsigned mapping_count = sizeof c_wide_mappings / sizeof *c_wide_mappings - 1;

// The value of `wc` in the property, 0 when it is in none of the ranges.
inline unsigned value_in(const WideProperty &property, wint_t wc) {
    for (unsigned i = 0; i < property.range_count; ++i) {
        const WideRange &range = property.ranges[i];
        if (wc >= range.low && wc <= range.high) return range.value;
    }
    return 0;
}

inline unsigned value_in(const WideProperty *list, unsigned count, unsigned number, wint_t wc) {
    return number - 1 < count ? value_in(list[number - 1], wc) : 0;
}

inline unsigned value_in_class(wint_t wc, wctype_t number) {
    return value_in(thread_record().locale->wide_classes, class_count, number, wc);
}

inline wint_t mapped(wint_t wc, wctrans_t number) {
    return static_cast<wint_t>(
        wc + value_in(thread_record().locale->wide_mappings, mapping_count, number, wc));
}

bool equal(const char *a, const char *b) {
    for (; *a == *b; ++a, ++b)
        if (!*a) return true;
    return false;
}

unsigned short number_of(const char *name, const WideProperty *list) {
    for (const WideProperty *entry = list; entry->name; ++entry)
        if (equal(name, entry->name)) return static_cast<unsigned short>(entry - list + 1);
    return 0;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

int __iswctype(wint_t wc, wctype_t desc) { return value_in_class(wc, desc); }
int iswctype(wint_t wc, wctype_t desc) { return value_in_class(wc, desc); }

int iswalnum(wint_t wc) { return value_in_class(wc, wide_alnum); }
int iswalpha(wint_t wc) { return value_in_class(wc, wide_alpha); }
int iswcntrl(wint_t wc) { return value_in_class(wc, wide_cntrl); }
int iswdigit(wint_t wc) { return value_in_class(wc, wide_digit); }
int iswgraph(wint_t wc) { return value_in_class(wc, wide_graph); }
int iswlower(wint_t wc) { return value_in_class(wc, wide_lower); }
int iswprint(wint_t wc) { return value_in_class(wc, wide_print); }
int iswpunct(wint_t wc) { return value_in_class(wc, wide_punct); }
int iswspace(wint_t wc) { return value_in_class(wc, wide_space); }
int iswupper(wint_t wc) { return value_in_class(wc, wide_upper); }
int iswxdigit(wint_t wc) { return value_in_class(wc, wide_xdigit); }
int iswblank(wint_t wc) { return value_in_class(wc, wide_blank); }

int iswascii(wint_t wc) { return wc < 0x80; }

wint_t towctrans(wint_t wc, wctrans_t desc) { return mapped(wc, desc); }
wint_t towlower(wint_t wc) { return mapped(wc, wide_tolower); }
wint_t towupper(wint_t wc) { return mapped(wc, wide_toupper); }

wctype_t wctype(const char *name) { return number_of(name, thread_record().locale->wide_classes); }
wctrans_t wctrans(const char *name) {
    return number_of(name, thread_record().locale->wide_mappings);
}

} // extern "C"
