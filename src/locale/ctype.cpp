// Classes and case of single-byte characters: one look into the tables of the thread's locale.

#include "core/thread_record.h"
#include "locale/locale_record.h"

#include <ctype.h>

namespace vexrt {

namespace {

constexpr bool within(int c, int low, int high) { return c >= low && c <= high; }

constexpr unsigned c_class_of(int c) {
    if (c == '\t') return class_control | class_space | class_tab;
    if (within(c, '\n', '\r')) return class_control | class_space;
    if (within(c, 0, 0x1F) || c == 0x7F) return class_control;
    if (c == ' ') return class_blank;
    if (within(c, '0', '9')) return class_digit | class_hex_digit;
    if (within(c, 'A', 'Z')) return class_upper | (c <= 'F' ? class_hex_digit : 0);
    if (within(c, 'a', 'z')) return class_lower | (c <= 'f' ? class_hex_digit : 0);
    return within(c, '!', '~') ? class_punctuation : 0;
}

constexpr int c_lower_of(int c) { return within(c, 'A', 'Z') ? c - 'A' + 'a' : c; }
constexpr int c_upper_of(int c) { return within(c, 'a', 'z') ? c - 'a' + 'A' : c; }

template <typename Entry, typename Rule>
constexpr ByteTable<Entry> make_table(Rule rule) {
    ByteTable<Entry> table{};
    for (int c = -1; c <= 255; ++c) table.entries[c + 1] = static_cast<Entry>(rule(c));
    return table;
}

inline int in_class(int c, unsigned mask) { return thread_record().locale->classes[c] & mask; }

constexpr unsigned letter = class_lower | class_upper;
constexpr unsigned visible = class_digit | letter | class_punctuation;

} // namespace

constexpr ByteTable<unsigned short> c_classes = make_table<unsigned short>(c_class_of);
constexpr ByteTable<short> c_lower_case = make_table<short>(c_lower_of);
constexpr ByteTable<short> c_upper_case = make_table<short>(c_upper_of);

} // namespace vexrt

using namespace vexrt;

extern "C" {

int isalnum(int c) { return in_class(c, class_digit | letter); }
int isalpha(int c) { return in_class(c, letter); }
int isblank(int c) { return in_class(c, class_blank | class_tab); }
int iscntrl(int c) { return in_class(c, class_control); }
int isdigit(int c) { return in_class(c, class_digit); }
int isgraph(int c) { return in_class(c, visible); }
int islower(int c) { return in_class(c, class_lower); }
int isprint(int c) { return in_class(c, visible | class_blank); }
int ispunct(int c) { return in_class(c, class_punctuation); }
int isspace(int c) { return in_class(c, class_white_space); }
int isupper(int c) { return in_class(c, class_upper); }
int isxdigit(int c) { return in_class(c, class_hex_digit); }

int _isascii(int c) { return c < 0x80; }

int tolower(int c) { return thread_record().locale->lower_case[c]; }
int toupper(int c) { return thread_record().locale->upper_case[c]; }

} // extern "C"
