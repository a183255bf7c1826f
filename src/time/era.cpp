// Eras: a list of entries "direction:offset:start:end:name:format", for example
// "+:2:1990/01/01:+*:Heisei:%EC%Ey". The direction '-' counts years backwards from the start.

#include "time/time_text.h"

#include <limits.h>

namespace vexrt {

namespace {

struct Date {
    long long year;
    int month, day;

    bool operator<=(const Date &other) const {
        if (year != other.year) return year < other.year;
        if (month != other.month) return month < other.month;
        return day <= other.day;
    }
};

// A signed number at the front of the text, which moves behind it. Limited to the range of int.
int take_integer(Item &text) {
    bool negative = !text.empty() && *text.begin == '-';
    if (!text.empty() && (negative || *text.begin == '+')) ++text.begin;
    long long value = 0;
    for (; !text.empty() && *text.begin >= '0' && *text.begin <= '9'; ++text.begin)
        if (value <= INT_MAX) value = 10 * value + (*text.begin - '0');
    if (value > INT_MAX) value = INT_MAX;
    return static_cast<int>(negative ? -value : value);
}

Date parse_date(Item text) {
    Date date = {};
    date.year = take_integer(text);
    if (!text.empty()) ++text.begin;
    date.month = take_integer(text);
    if (!text.empty()) ++text.begin;
    date.day = take_integer(text);
    return date;
}

// What stands in front of the next ':' in the entry, which moves behind it.
Item take_field(Item &entry) {
    Item field = {entry.begin, entry.begin};
    while (field.end != entry.end && *field.end != ':') ++field.end;
    entry.begin = field.end == entry.end ? field.end : field.end + 1;
    return field;
}

// The direction and a star stand for a date beyond all others.
bool is_open(const Item &end, char direction) {
    return end.end - end.begin == 2 && end.begin[0] == direction && end.begin[1] == '*';
}

// The entry as an era if it holds on `date`.
Era match(Item entry, const Date &date) {
    Item direction = take_field(entry), offset = take_field(entry);
    Item start_text = take_field(entry), end = take_field(entry);
    Item name = take_field(entry), format = {entry.begin, entry.begin};
    while (format.end != entry.end && *format.end != ';') ++format.end;

    bool backward = !direction.empty() && *direction.begin == '-';
    Date start = parse_date(start_text);
    bool begun = backward ? date <= start : start <= date;
    bool over = !is_open(end, backward ? '-' : '+') &&
                !(backward ? parse_date(end) <= date : date <= parse_date(end));
    if (start_text.empty() || !begun || over) return {};
    long long years = backward ? start.year - date.year : date.year - start.year;
    return {true, years + take_integer(offset), name, format};
}

} // namespace

Era find_era(const char *eras, const tm &time) {
    Date date = {time.tm_year + 1900LL, time.tm_mon + (time.tm_mon < INT_MAX), time.tm_mday};
    if (!*eras) return {};
    for (Item entry = {eras + 1, eras + 1};; entry.begin = ++entry.end) {
        while (*entry.end && *entry.end != *eras) ++entry.end;
        Era era = match(entry, date);
        if (era.matches || !*entry.end) return era;
    }
}

} // namespace vexrt
