// The local time zone: one text for everything, the zone string.
//
//   :EST:EDT:-0500:031007:110106     names of standard and of daylight time, offset, rules
//
// Its first character separates the fields. The offset is hours and minutes, east positive. The
// rules, taken in order, switch daylight time on and off; each is a date that may have a year in
// front (from which on it holds), an hour (00 without) and a weekday behind:
//
//   MMDD  MMDDHH  (YYYY)MMDDHH       at that hour in UTC
//   MMDDHH-W                         on the last weekday W (1 Monday, 7 Sunday) before that day
//   MMDDHH+W                         on the first weekday W on or after that day
#pragma once

#include <time.h>

namespace vexrt {

struct ZoneRule {
    unsigned char weekday; // 0: the date itself; 1 to 7: before it; 8 to 14: on or after it
    unsigned char hour;    // UTC; beyond 23 it counts into the days that follow
    unsigned char day;     // of the month, from 1
    unsigned char month;   // 0 to 11
    unsigned char year;    // since 1900; 0: any
};
static_assert(sizeof(ZoneRule) == 5);
constexpr unsigned char end_of_rules = 255; // in `weekday`

struct Zone {
    int offset_minutes;    // of standard time, east positive
    const ZoneRule *rules; // ended by `end_of_rules`; null: they cannot be parsed
};

// The calling thread's zone: that of its locale, else that of the process. Parsed when it changes.
Zone current_zone();

// Its text.
const char *current_zone_string();

// The text of the process, found out once from the environment or the system.
const char *process_zone_string();

// The fields of a zone string.
enum ZoneField : unsigned { standard_name, daylight_name, zone_offset, first_rule };

// The value of the offset field, -1299 to 1299 (-530 is -05:30); 0 for any other text.
int zone_offset_value(const char *zone);

// Parses the rules into a block of the heap; null when they are malformed or there is no memory.
ZoneRule *parse_zone_rules(const char *zone);

// 1 when `local`, in standard time, lies within daylight time, else 0.
int is_daylight(const ZoneRule *rules, int offset_minutes, const tm &local);

} // namespace vexrt
