// Fills a locale from the system's data. A record begins as a copy of the "C" one; every table and
// string that belongs to the locale then replaces it, and what cannot be had makes the load fail.

#include "core/thread_record.h"
#include "heap/heap.h"
#include "locale/locale_list.h"

#include <limits.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

namespace vexrt {

struct Text {
    Text *next;
    char characters[1];
};

namespace {

// ---- finding the identifier ----

// The callback of the enumeration has no argument of its own: its context is in a thread-local
// slot, which is kept for the life of the process.
struct LocaleSearch {
    const char *name;
    size_t length;
    LCID found; // 0: none
};

volatile LONG search_slot = static_cast<LONG>(TLS_OUT_OF_INDEXES);

bool have_search_slot() {
    if (search_slot != static_cast<LONG>(TLS_OUT_OF_INDEXES)) return true;
    DWORD slot = TlsAlloc();
    if (slot == TLS_OUT_OF_INDEXES) return false;
    LONG none = static_cast<LONG>(TLS_OUT_OF_INDEXES);
    if (!__atomic_compare_exchange_n(&search_slot, &none, static_cast<LONG>(slot), false,
                                     __ATOMIC_SEQ_CST, __ATOMIC_SEQ_CST))
        TlsFree(slot); // another thread was first
    return true;
}

// A number of the system's locale data; -1 when it is not known.
int query_number(LCID lcid, LCTYPE type) {
    DWORD value;
    bool known = GetLocaleInfoA(lcid, type | LOCALE_RETURN_NUMBER, reinterpret_cast<char *>(&value),
                                sizeof value);
    return known ? static_cast<int>(value) : -1;
}

// A country's first locale counts. Some are for Unicode alone and have no ANSI code page: they
// stand back behind a later one that narrow text can be written in.
BOOL __stdcall compare_country(char *identifier) {
    auto &search = *static_cast<LocaleSearch *>(TlsGetValue(static_cast<DWORD>(search_slot)));
    char *end;
    LCID lcid = strtoul(identifier, &end, 16);
    char country[8];
    if (end == identifier || *end ||
        !GetLocaleInfoA(lcid, LOCALE_SISO3166CTRYNAME, country, sizeof country) ||
        strlen(country) != search.length || _strnicmp(country, search.name, search.length) != 0)
        return true;
    bool unicode_only = query_number(lcid, LOCALE_IDEFAULTANSICODEPAGE) == 0;
    if (!unicode_only || !search.found) search.found = lcid;
    return unicode_only;
}

LCID find_identifier(const char *name, size_t length) {
    LocaleSearch search = {name, length, 0};
    if (!have_search_slot()) return 0;
    TlsSetValue(static_cast<DWORD>(search_slot), &search);
    EnumSystemLocalesA(compare_country, LCID_INSTALLED);
    return search.found;
}

// ---- the pieces of a record ----

// All bytes in order, as the system is asked about them. One that begins a character of two bytes
// would take the next one with it; a NUL stands in its place.
class SingleBytes {
public:
    explicit SingleBytes(UINT code_page) {
        for (int c = 0; c < 256; ++c) {
            bool leads = IsDBCSLeadByteEx(code_page, static_cast<BYTE>(c));
            of[c] = static_cast<char>(leads ? 0 : c);
        }
    }
    bool contains(int c) const { return c == 0 || of[c] != 0; }

    char of[256];
};

class Loader {
public:
    explicit Loader(LoadedLocale &locale) : locale_(locale), lcid_(locale.lcid) {}

    bool load() {
        return load_characters() && load_collation() && load_conventions() && load_time();
    }

private:
    bool load_characters();
    bool load_classes(const SingleBytes &bytes);
    bool load_case(const SingleBytes &bytes, DWORD mapping, ByteTable<short> &table) const;
    bool load_collation();
    bool load_conventions();
    bool load_time();
    bool load_formats();

    bool query(LCTYPE type, char *to, int size) const {
        return GetLocaleInfoA(lcid_, type, to, size) > 0;
    }

    bool keep(const char *text, char *&to);
    bool string(LCTYPE type, char *&to, const char *suffix = "");
    bool grouping(LCTYPE type, char *&to);
    bool list(const LCTYPE *types, unsigned count, const char *&to);

    static constexpr int text_limit = 256;

    LoadedLocale &locale_;
    LCID lcid_;
};

unsigned class_of(WORD type) {
    unsigned result = 0;
    if (type & C1_UPPER) result |= class_upper;
    if (type & C1_LOWER) result |= class_lower;
    if (type & C1_DIGIT) result |= class_digit;
    if (type & C1_SPACE) result |= class_space;
    if (type & C1_PUNCT) result |= class_punctuation;
    if (type & C1_CNTRL) result |= class_control;
    if (type & C1_XDIGIT) result |= class_hex_digit;
    return result;
}

bool Loader::load_classes(const SingleBytes &bytes) {
    WORD types[256];
    if (!GetStringTypeExA(lcid_, CT_CTYPE1, bytes.of, 256, types)) return false;
    unsigned short *entries = locale_.class_table.entries + 1;
    entries[-1] = 0;
    for (int c = 0; c < 256; ++c)
        entries[c] = static_cast<unsigned short>(bytes.contains(c) ? class_of(types[c]) : 0);
    entries['\t'] |= class_tab | class_space;
    for (int c = '\n'; c <= '\r'; ++c) entries[c] |= class_space;
    entries[' '] = class_blank;
    locale_.classes = entries;
    return true;
}

bool Loader::load_case(const SingleBytes &bytes, DWORD mapping, ByteTable<short> &table) const {
    char mapped[256];
    if (LCMapStringA(lcid_, mapping, bytes.of, 256, mapped, 256) != 256) return false;
    table.entries[0] = -1;
    for (int c = 0; c < 256; ++c)
        table.entries[c + 1] =
            bytes.contains(c) ? static_cast<unsigned char>(mapped[c]) : static_cast<short>(c);
    return true;
}

// A table pointer of 1 selects the mode of the code page, and the system's collation.
StateTable by_system() { return reinterpret_cast<StateTable>(uintptr_t{1}); }

bool Loader::load_characters() {
    int code_page = query_number(lcid_, LOCALE_IDEFAULTANSICODEPAGE);
    if (code_page < 0) return false;
    locale_.code_page = static_cast<unsigned>(code_page);
    const SingleBytes bytes(locale_.code_page);
    if (!load_classes(bytes) || !load_case(bytes, LCMAP_LOWERCASE, locale_.lower_table) ||
        !load_case(bytes, LCMAP_UPPERCASE, locale_.upper_table))
        return false;
    locale_.lower_case = locale_.lower_table.zero();
    locale_.upper_case = locale_.upper_table.zero();
    locale_.decode[0] = locale_.encode[0] = by_system();
    return true;
}

// The weights of a byte: the system's sort key up to the first byte 1. A byte without a key has an
// empty one, which comes before all others.
struct SortKey {
    unsigned char weights[30];
    unsigned char length;
    unsigned char byte;
};

int compare_keys(const void *a, const void *b) {
    const auto &left = *static_cast<const SortKey *>(a), &right = *static_cast<const SortKey *>(b);
    unsigned common = left.length < right.length ? left.length : right.length;
    int order = memcmp(left.weights, right.weights, common);
    return order ? order : left.length - right.length;
}

// Bytes of equal keys share the rank of the first.
bool Loader::load_collation() {
    auto *keys = static_cast<SortKey *>(heap_allocate(256 * sizeof(SortKey)));
    if (!keys) return false;
    for (int c = 0; c < 256; ++c) {
        char key[64], byte = static_cast<char>(c);
        int size = LCMapStringA(lcid_, LCMAP_SORTKEY, &byte, 1, key, sizeof key);
        auto *end = size > 0
                        ? static_cast<const char *>(memchr(key, 1, static_cast<unsigned>(size)))
                        : nullptr;
        size_t length = end ? static_cast<size_t>(end - key) : 0;
        if (length > sizeof keys->weights) length = sizeof keys->weights;
        memcpy(keys[c].weights, key, length);
        keys[c].length = static_cast<unsigned char>(length);
        keys[c].byte = static_cast<unsigned char>(c);
    }
    qsort(keys, 256, sizeof *keys, compare_keys);
    locale_.collation_table.entries[0] = 0;
    unsigned short *ranks = locale_.collation_table.entries + 1;
    for (int i = 0, rank = 0; i < 256; ++i) {
        if (i > 0 && compare_keys(&keys[i - 1], &keys[i]) != 0) ++rank;
        ranks[keys[i].byte] = static_cast<unsigned short>(0xE000 + rank);
    }
    heap_release(keys);
    locale_.narrow_collation[0] = ranks;
    locale_.wide_collation[0] = by_system();
    return true;
}

// ---- strings ----

bool Loader::keep(const char *text, char *&to) {
    size_t size = strlen(text) + 1;
    auto *block = static_cast<Text *>(heap_allocate(offsetof(Text, characters) + size));
    if (!block) return false;
    memcpy(block->characters, text, size);
    block->next = locale_.texts;
    locale_.texts = block;
    to = block->characters;
    return true;
}

bool Loader::string(LCTYPE type, char *&to, const char *suffix) {
    char text[text_limit];
    if (!query(type, text, text_limit - 2)) return false;
    memcpy(text + strlen(text), suffix, strlen(suffix) + 1);
    return keep(text, to);
}

// "3;2;0" to the bytes 3 2 0.
bool Loader::grouping(LCTYPE type, char *&to) {
    constexpr int picture_size = 32;
    char picture[picture_size], groups[picture_size + 1];
    if (!query(type, picture, picture_size)) return false;
    unsigned count = 0;
    for (char *at = picture;; ++at) {
        char *end;
        long size = strtol(at, &end, 0);
        if (end == at || (*end && *end != ';')) return false;
        groups[count++] = static_cast<char>(size);
        at = end;
        if (!*at || !at[1]) break;
    }
    groups[count] = '\0';
    return keep(groups, to);
}

struct StringField {
    char *lconv::*member;
    LCTYPE type;
};
constexpr StringField string_fields[] = {
    {&lconv::currency_symbol, LOCALE_SCURRENCY},
    {&lconv::mon_decimal_point, LOCALE_SMONDECIMALSEP},
    {&lconv::mon_thousands_sep, LOCALE_SMONTHOUSANDSEP},
    {&lconv::negative_sign, LOCALE_SNEGATIVESIGN},
    {&lconv::positive_sign, LOCALE_SPOSITIVESIGN},
    {&lconv::decimal_point, LOCALE_SDECIMAL},
    {&lconv::thousands_sep, LOCALE_STHOUSAND},
};

struct NumberField {
    char lconv::*member;
    LCTYPE type;
};
constexpr NumberField number_fields[] = {
    {&lconv::frac_digits, LOCALE_ICURRDIGITS},
    {&lconv::n_cs_precedes, LOCALE_INEGSYMPRECEDES},
    {&lconv::n_sep_by_space, LOCALE_INEGSEPBYSPACE},
    {&lconv::n_sign_posn, LOCALE_INEGSIGNPOSN},
    {&lconv::p_cs_precedes, LOCALE_IPOSSYMPRECEDES},
    {&lconv::p_sep_by_space, LOCALE_IPOSSEPBYSPACE},
    {&lconv::p_sign_posn, LOCALE_IPOSSIGNPOSN},
    {&lconv::int_frac_digits, LOCALE_IINTLCURRDIGITS},
};

// The fourth character of the international currency symbol is a blank.
bool Loader::load_conventions() {
    lconv &to = locale_.conventions;
    for (const StringField &field : string_fields)
        if (!string(field.type, to.*field.member)) return false;
    for (const NumberField &field : number_fields) {
        int value = query_number(lcid_, field.type);
        to.*field.member = static_cast<char>(value < 0 ? CHAR_MAX : value);
    }
    return string(LOCALE_SINTLSYMBOL, to.int_curr_symbol, " ") &&
           grouping(LOCALE_SMONGROUPING, to.mon_grouping) &&
           grouping(LOCALE_SGROUPING, to.grouping);
}

// ---- time ----

constexpr char separator = '|';
constexpr unsigned month_count = 12, weekday_count = 7;

bool Loader::list(const LCTYPE *types, unsigned count, const char *&to) {
    constexpr unsigned longest = 2 * month_count * 81;
    char text[longest], *at = text;
    for (unsigned i = 0; i < count; ++i) {
        *at++ = separator;
        if (!query(types[i], at, static_cast<int>(text + longest - 1 - at))) return false;
        at += strlen(at);
    }
    *at = '\0';
    char *kept;
    if (!keep(text, kept)) return false;
    to = kept;
    return true;
}

// In front of what else the buffer can hold, a terminator at least.
char *put(char c, char *to, const char *end) {
    if (end - to > 1) *to++ = c;
    return to;
}

// Date and time, date, time; there is no twelve-hour format.
bool Loader::load_formats() {
    constexpr int picture_size = 80;
    char date[picture_size], time[picture_size], formats[160];
    const char *end = formats + sizeof formats;
    if (!query(LOCALE_SSHORTDATE, date, picture_size) ||
        !query(LOCALE_STIMEFORMAT, time, picture_size))
        return false;
    char *at = formats;
    at = convert_date_picture(date, put(separator, at, end), end);
    at = convert_time_picture(time, put(' ', at, end), end);
    at = convert_date_picture(date, put(separator, at, end), end);
    convert_time_picture(time, put(separator, at, end), end);
    char *kept;
    if (!keep(formats, kept)) return false;
    for (const char *&format : locale_.formats) format = kept;
    return true;
}

bool Loader::load_time() {
    const LCTYPE halves[] = {LOCALE_S1159, LOCALE_S2359};
    LCTYPE days[2 * weekday_count], months[2 * month_count];
    for (unsigned i = 0; i < weekday_count; ++i) {
        unsigned from_monday = (i + weekday_count - 1) % weekday_count;
        days[2 * i] = LOCALE_SABBREVDAYNAME1 + from_monday;
        days[2 * i + 1] = LOCALE_SDAYNAME1 + from_monday;
    }
    for (unsigned i = 0; i < month_count; ++i) {
        months[2 * i] = LOCALE_SABBREVMONTHNAME1 + i;
        months[2 * i + 1] = LOCALE_SMONTHNAME1 + i;
    }
    if (!list(halves, 2, locale_.am_pm) || !list(days, 2 * weekday_count, locale_.weekdays[0]) ||
        !list(months, 2 * month_count, locale_.months[0]))
        return false;
    for (const char *&names : locale_.weekdays) names = locale_.weekdays[0];
    for (const char *&names : locale_.months) names = locale_.months[0];
    return load_formats();
}

} // namespace

LoadedLocale *load_locale(const char *name, size_t length) {
    LCID lcid = find_identifier(name, length);
    if (!lcid) return nullptr;
    auto *locale = static_cast<LoadedLocale *>(heap_allocate(sizeof(LoadedLocale)));
    auto *copy = static_cast<char *>(heap_allocate(length + 1));
    if (locale && copy) {
        static_cast<LocaleRecord &>(*locale) = c_locale;
        memcpy(copy, name, length);
        copy[length] = '\0';
        locale->name = copy;
        locale->lcid = lcid;
        locale->texts = nullptr;
        if (Loader(*locale).load()) return locale;
        release_locale(locale);
        return nullptr;
    }
    heap_release(copy);
    heap_release(locale);
    return nullptr;
}

void release_locale(LoadedLocale *locale) {
    while (Text *text = locale->texts) {
        locale->texts = text->next;
        heap_release(text);
    }
    heap_release(const_cast<char *>(locale->name));
    heap_release(locale);
}

} // namespace vexrt
