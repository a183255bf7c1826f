// Daylight saving rules: their text and their evaluation.

#include "heap/heap.h"
#include "time/calendar.h"
#include "time/list.h"
#include "time/zone.h"

#include <stddef.h>

namespace vexrt {

namespace {

constexpr int first_year = 1900, last_year = first_year + 255;

// Takes `digits` decimal digits from the front of the text; -1 when it does not begin with them.
int take_number(Item &text, int digits) {
    int value = 0;
    if (text.end - text.begin < digits) return -1;
    for (; digits; --digits, ++text.begin) {
        if (*text.begin < '0' || *text.begin > '9') return -1;
        value = 10 * value + (*text.begin - '0');
    }
    return value;
}

bool take(Item &text, char c) {
    if (text.empty() || *text.begin != c) return false;
    ++text.begin;
    return true;
}

bool take_year(Item &text, ZoneRule &rule) {
    rule.year = 0;
    if (!take(text, '(')) return true;
    int year = take_number(text, 4);
    rule.year = static_cast<unsigned char>(year - first_year);
    return year >= first_year && year <= last_year && take(text, ')');
}

bool take_weekday(Item &text, ZoneRule &rule) {
    bool after = take(text, '+');
    if (!after && !take(text, '-')) return false;
    int weekday = take_number(text, 1);
    rule.weekday = static_cast<unsigned char>(weekday + (after ? 7 : 0));
    return weekday >= 1 && weekday <= 7;
}

bool parse_rule(Item text, ZoneRule &rule) {
    rule = {};
    if (!take_year(text, rule)) return false;
    int month = take_number(text, 2), day = take_number(text, 2);
    if (month < 1 || month > 12 || day < 1 || day > 31) return false;
    rule.month = static_cast<unsigned char>(month - 1);
    rule.day = static_cast<unsigned char>(day);
    if (!text.empty() && *text.begin != '+' && *text.begin != '-') {
        int hour = take_number(text, 2);
        if (hour < 0) return false;
        rule.hour = static_cast<unsigned char>(hour);
    }
    return text.empty() || (take_weekday(text, rule) && text.empty());
}

size_t count_items(Item list, char separator) {
    size_t count = 1;
    for (const char *at = list.begin; *at; ++at) count += *at == separator;
    return count;
}

// The day of the year, from 0; before or behind the year where the weekday leads there.
int day_of_rule(const ZoneRule &rule, bool leap, int first_weekday) {
    int day = days_before_month[leap][rule.month] + rule.day - 1;
    if (rule.weekday == 0) return day;
    int weekday = (first_weekday + day) % 7;
    day += (rule.weekday - weekday + 7) % 7;
    return rule.weekday <= 7 ? day - 7 : day;
}

} // namespace

ZoneRule *parse_zone_rules(const char *zone) {
    Item item = list_item(zone, first_rule);
    bool none = item.begin == item.end && !*item.end;
    size_t count = none ? 0 : count_items(item, *zone);
    auto *rules = static_cast<ZoneRule *>(heap_allocate((count + 1) * sizeof(ZoneRule)));
    if (!rules) return nullptr;
    for (size_t i = 0; i < count; ++i) {
        if (!parse_rule(item, rules[i])) {
            heap_release(rules);
            return nullptr;
        }
        item.begin = ++item.end;
        while (i + 1 < count && *item.end && *item.end != *zone) ++item.end;
    }
    rules[count] = {end_of_rules, 0, 0, 0, 0};
    return rules;
}

// Rules hold for moments in UTC; each is shifted by the offset, so that all times are local
// standard ones, counted in minutes of the year. A rule switches daylight time on when it is off
// and the next rule belongs to the same year, as its end; in any other case it switches it off.
int is_daylight(const ZoneRule *rules, int offset_minutes, const tm &local) {
    int now = (local.tm_yday * 24 + local.tm_hour) * 60 + local.tm_min;
    int first_weekday = (local.tm_wday - local.tm_yday + 371) % 7; // of 1 January
    bool leap = is_leap_year(local.tm_year), daylight = false;
    for (const ZoneRule *rule = rules; rule->weekday != end_of_rules; ++rule) {
        if (rule->year > local.tm_year) continue;
        int day = day_of_rule(*rule, leap, first_weekday);
        if (now < (day * 24 + rule->hour) * 60 + offset_minutes) break;
        bool has_end = rule[1].weekday != end_of_rules && rule[1].year == rule->year;
        daylight = has_end && !daylight;
    }
    return daylight;
}

} // namespace vexrt
