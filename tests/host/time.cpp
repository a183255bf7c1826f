// Natively, with a locale record of this test's own: eras, alternative digits, lists that are malformed
// or name each other without end, multibyte names in wide text; and zone strings of any bytes.

#include "core/constraint.h"
#include "heap/heap.h"
#include "locale/multibyte.h"
#include "time/calendar.h"
#include "time/time_text.h"
#include "time/zone.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <wchar.h>

namespace vexrt {

DWORD thread_record_slot = TLS_OUT_OF_INDEXES;
LocaleRecord c_locale;
static ThreadRecord record;
static char zone_text[200];
ThreadRecord &create_thread_record() { return record; }
errno_t report_constraint(errno_t code) { return code; }
const char *process_zone_string() { return zone_text; }
void *heap_allocate(size_t size) { return malloc(size); }
void heap_release(void *block) { free(block); }

} // namespace vexrt

using namespace vexrt;

extern "C" {

// A double-byte code page in which only 0x81 leads: 0x81 'A' is one character.
BOOL __stdcall IsDBCSLeadByteEx(UINT, BYTE byte) { return byte == 0x81; }

int __stdcall MultiByteToWideChar(UINT, DWORD, const char *s, int size, wchar_t *to, int) {
    auto byte = static_cast<unsigned char>(*s);
    if (byte >= 0xF0 || (size == 2 && s[1] != 'A')) return 0;
    if (to) *to = size == 2 ? 0x3001 : byte >= 0x80 ? static_cast<wchar_t>(0x0400 + byte) : byte;
    return 1;
}

int __stdcall WideCharToMultiByte(UINT, DWORD, const wchar_t *, int, char *, int, const char *, BOOL *) {
    return 0;
}

} // extern "C"

namespace {

int passed, failed;

void check(const char *what, const char *got, const char *due) {
    if (strcmp(got, due) == 0) {
        ++passed;
        return;
    }
    ++failed;
    printf("%s is \"%s\", due \"%s\"\n", what, got, due);
}

LocaleRecord locale;

void check_format(const char *format, const tm &time, const char *due) {
    char text[100];
    format_time(text, sizeof text, format, time, locale);
    check(format, text, due);
}

tm date(int year, int month, int day) {
    tm time = {};
    time.tm_year = year - 1900;
    time.tm_mon = month - 1;
    time.tm_mday = day;
    return time;
}

void test_eras() {
    struct Case {
        const char *eras, *format;
        int year, month, day;
        const char *due;
    };
    static const char modern[] = ";+:2:1990/01/01:+*:Heisei:%EC %Ey;+:1:1989/01/08:1989/12/31:Heisei:%EC one"
                                 ";+:2:1927/01/01:1989/01/07:Showa:%EC%Ey;-:1:-1/12/31:-*:BC:%Ey %EC"
                                 ";+:1:0001/1/1:1926/12/31:AD:%EC %Ey";
    static const Case cases[] = {
        {modern, "%EC|%Ey|%EY", 2010, 7, 4, "Heisei|22|Heisei 22"},
        {modern, "%EC|%Ey|%EY", 1990, 1, 1, "Heisei|2|Heisei 2"},
        {modern, "%EC|%Ey|%EY", 1989, 12, 31, "Heisei|1|Heisei one"},
        {modern, "%EC|%Ey|%EY", 1989, 1, 8, "Heisei|1|Heisei one"},
        {modern, "%EC|%Ey|%EY", 1989, 1, 7, "Showa|64|Showa64"},
        {modern, "%EC|%Ey|%EY", 1927, 1, 1, "Showa|2|Showa2"},
        {modern, "%EC|%Ey|%EY", 1926, 12, 31, "AD|1926|AD 1926"},
        {modern, "%EC|%Ey|%EY", 1, 1, 1, "AD|1|AD 1"},
        {modern, "%EC|%Ey|%EY", -1, 12, 31, "BC|1|1 BC"},
        {modern, "%EC|%Ey|%EY", -44, 3, 15, "BC|44|44 BC"},
        {modern, "%EC|%Ey|%EY", 0, 5, 5, "00|00|0000"}, /* in none of them */
        {modern, "%C|%y|%Y", 2010, 7, 4, "20|10|2010"},
        {";+:5:2000/01/01:+*::x;y", "%EC|%Ey|%EY", 2001, 1, 1, "20|6|x"}, /* no name */
        {"|+:5:2000/01/01:+*:N:a:b;c", "%EC|%Ey|%EY", 2001, 1, 1, "N|6|a:b"},
        {"|+:-5:2000/01/01:+*:N:f", "%Ey", 2001, 1, 1, "0"}, /* negative */
        {"|+:99999999999:2000/01/01:+*:N:f", "%Ey", 2000, 1, 1, "2147483647"},
        {"|+:1:2000/01/01:+*:N:%EY", "%EY", 2001, 1, 1, ""}, /* names itself without end */
        {"|+:1:2000/01/01:-*:N:f", "%EY", 2001, 1, 1, "2001"}, /* only its own direction is open */
        {"|+:", "%EC|%EY", 2001, 1, 1, "20|2001"},
        {"|", "%EC|%EY", 2001, 1, 1, "20|2001"},
        {"|||||", "%EC|%EY", 2001, 1, 1, "20|2001"},
        {"|+:1", "%EC|%EY", 2001, 1, 1, "20|2001"},
        {"|+:1:2000", "%EC|%EY", 2000, 1, 1, "20|2000"}, /* without an end: of one day */
    };
    for (const Case &c : cases) {
        locale.era = c.eras;
        check_format(c.format, date(c.year, c.month, c.day), c.due);
    }
    locale.era = "";
}

void test_alternative_digits() {
    locale.alternative_digits = "/zero/one/two/three/four//six";
    tm time = date(2010, 7, 4);
    time.tm_hour = 2;
    check_format("%Od|%OH|%OM|%d|%H", time, "four|two|zero|04|02");
    check_format("%Om", time, "07");           /* past the end */
    check_format("%Om", date(2010, 5, 4), "05"); /* an empty one */
    check_format("%Oe", time, "four");
    check_format("%Oy", date(2006, 1, 1), "six");
    locale.alternative_digits = "";
}

void test_lists() {
    tm time = date(2010, 7, 4);
    locale.formats[3] = "|a|b|%H"; // a locale with three formats only
    locale.formats[4] = "|a|b|%H";
    locale.formats[8] = "|x|y|e%X";
    check_format("%X|%r|%EX", time, "00||e00");
    locale.formats[1] = "|%c%c";
    check_format("[%c]", time, "[]");
    locale.am_pm = "";
    locale.weekdays[0] = ":";
    check_format("[%p%a]", time, "[]");
    locale.months[0] = ":JA:Januar:x:y";
    check_format("%b%B", date(2010, 1, 1), "JAJanuary");
}

void test_wide() {
    wchar_t text[20];
    locale.decode[0] = reinterpret_cast<StateTable>(1); // the mode of code pages
    locale.code_page = 1251;
    record.locale = &locale;
    locale.months[1] = ":a:\xC0\xF1z\x81" "Az";
    size_t length = format_time(text, 20, L"%B", date(2010, 1, 1), locale);
    char shown[60];
    sprintf(shown, "%u: %x %x %x %x %x", static_cast<unsigned>(length), text[0], text[1], text[2], text[3], text[4]);
    check("wide name", shown, "5: 4c0 f1 7a 3001 7a"); /* the second cannot be decoded */
    locale.months[1] = ":a:\x81";
    length = format_time(text, 20, L"%B", date(2010, 1, 1), locale);
    check("cut character", length == 0 || text[length] == 0 ? "ended" : "not ended", "ended");
    record.locale = &c_locale;
    locale.decode[0] = c_state_table.of;
}

unsigned random_bits() {
    static unsigned state = 7;
    state = state * 1664525 + 1013904223;
    return state >> 8;
}

// What the parser takes must be a list of rules that can be evaluated at any time of a year.
void test_any_zone() {
    static const char bytes[] = "::::0123456789()+-xA";
    unsigned taken = 0;
    for (unsigned i = 0; i < 200000; ++i) {
        char *zone = static_cast<char *>(malloc(64)); /* its end is watched */
        unsigned length = random_bits() % 40, at = 24;
        memcpy(zone + 24 - 10, ":A:B:+0100", 10);
        char *start = i % 4 ? zone + 14 : zone + 24;
        for (unsigned k = 0; k < length && at < 63; ++k) zone[at++] = bytes[random_bits() % 20];
        if (i % 4 == 3) at = 24 + sprintf(zone + 24, ":%02u%02u%02u%c%u:1231", random_bits() % 14,
                                          random_bits() % 33, random_bits() % 100,
                                          "+-"[random_bits() % 2], random_bits() % 9);
        zone[at] = '\0';
        char *copy = static_cast<char *>(malloc(strlen(start) + 1));
        strcpy(copy, start);
        if (ZoneRule *rules = parse_zone_rules(copy)) {
            ++taken;
            tm time = {};
            time.tm_year = static_cast<int>(70 + random_bits() % 130);
            time.tm_yday = static_cast<int>(random_bits() % 366);
            time.tm_wday = static_cast<int>(random_bits() % 7);
            int verdict = is_daylight(rules, zone_offset_value(copy), time);
            if (verdict != 0 && verdict != 1) ++failed;
            free(rules);
        }
        for (unsigned item = 0; item < 5; ++item) {
            Item text = list_item(copy, item);
            if (text.begin < copy || text.end < text.begin || text.end > copy + strlen(copy)) ++failed;
        }
        free(copy);
        free(zone);
    }
    check("some zones are taken, some are not", taken > 10000 && taken < 190000 ? "yes" : "no", "yes");
}

} // namespace

int main() {
    for (const char *&list : locale.formats) list = "|c|x|X|r";
    for (const char *&list : locale.weekdays) list = ":Sun:Sunday";
    for (const char *&list : locale.months) list = ":Jan:January";
    locale.am_pm = ":AM:PM";
    locale.era = locale.alternative_digits = locale.zone = "";
    locale.decode[0] = c_state_table.of;
    c_locale.decode[0] = c_state_table.of;
    record.locale = &c_locale;
    test_eras();
    test_alternative_digits();
    test_lists();
    test_wide();
    test_any_zone();
    printf("%d passed, %d failed\n", passed, failed);
    return failed != 0;
}
