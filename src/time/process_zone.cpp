// The zone string of the process: the variable TIMEZONE as it stands, else the variable TZ, else
// what the system says.

#include "core/fatal.h"
#include "core/last_error.h"
#include "core/lock.h"
#include "heap/heap.h"
#include "time/calendar.h"
#include "time/zone.h"

#include <stdio.h>
#include <string.h>

namespace vexrt {

namespace {

const char *process_zone; // set once, under lock 5
char zone_text[96];       // where it is not TIMEZONE's

// A copy of a variable's value; null when it is not set. The value may change between the two
// calls.
const char *copy_of_variable(const char *name) {
    DWORD size = GetEnvironmentVariableA(name, nullptr, 0);
    while (size) {
        auto *copy = static_cast<char *>(heap_allocate(size));
        if (!copy) fatal(FatalCode::out_of_memory);
        DWORD needed = GetEnvironmentVariableA(name, copy, size);
        if (needed < size) {
            copy[needed] = '\0';
            return copy;
        }
        heap_release(copy);
        size = needed;
    }
    return nullptr;
}

bool all_letters(const char *text, size_t count) {
    for (size_t i = 0; i < count; ++i) {
        char lower = static_cast<char>(text[i] | 0x20);
        if (lower < 'a' || lower > 'z') return false;
    }
    return true;
}

constexpr bool is_digit(char c) { return c >= '0' && c <= '9'; }

// TZ is three letters, hours of two digits with or without a sign, and perhaps three letters more.
// The sign is taken as it stands, east positive.
bool zone_from_tz() {
    char value[16];
    DWORD length = GetEnvironmentVariableA("TZ", value, sizeof value);
    if (length < 5 || length >= sizeof value || !all_letters(value, 3)) return false;
    const char *at = value + 3;
    char sign = *at == '+' || *at == '-' ? *at++ : '+';
    if (!is_digit(at[0]) || !is_digit(at[1])) return false;
    const char *daylight = at + 2;
    size_t rest = strlen(daylight);
    if (rest != 0 && (rest != 3 || !all_letters(daylight, 3))) return false;

    memcpy(zone_text, ":EST:EDT:-0500", 15);
    memcpy(zone_text + 1, value, 3);
    if (rest) memcpy(zone_text + 5, daylight, 3);
    zone_text[9] = sign;
    memcpy(zone_text + 10, at, 2);
    return true;
}

// The day in the current year that a date of the form "the fifth Sunday" names; five is the last.
unsigned resolve_day(const SYSTEMTIME &date) {
    SYSTEMTIME now;
    GetSystemTime(&now);
    int year = now.wYear - 1900, month = date.wMonth - 1;
    bool leap = is_leap_year(year);
    const short *before = days_before_month[leap];
    int first =
        (year * 365 + leap_days_before(year) + before[month] + 1) % 7; // 1900 began on a Monday
    int occurrence = date.wDay == 0 ? 1 : date.wDay;
    int day = 1 + (date.wDayOfWeek % 7 - first + 7) % 7 + 7 * (occurrence - 1);
    while (day > before[month + 1] - before[month]) day -= 7;
    return static_cast<unsigned>(day);
}

// Writes the rule for a change at `date`, which is in local time, `bias` minutes behind UTC then.
char *write_rule(char *to, const SYSTEMTIME &date, LONG bias) {
    if (date.wMonth == 0 || date.wMonth > 12) return to;
    LONG hour = date.wHour + bias / 60;
    unsigned utc_hour = hour < 0 ? 0 : static_cast<unsigned>(hour);
    size_t room = static_cast<size_t>(zone_text + sizeof zone_text - to);
    if (date.wYear)
        return to + snprintf(to, room, ":(%04.4hu)%02.2hu%02.2hu%02.2hu", date.wYear, date.wMonth,
                             date.wDay, utc_hour);
    return to +
           snprintf(to, room, ":%02.2hu%02.2hu%02.2hu", date.wMonth, resolve_day(date), utc_hour);
}

// The hundreds of the offset are hours, but what is below is hundredths of hours, not minutes: that
// is how the interface is defined, for zones of odd half hours too.
void zone_from_system() {
    TIME_ZONE_INFORMATION zone;
    DWORD kind = GetTimeZoneInformation(&zone);
    if (kind > TIME_ZONE_ID_DAYLIGHT) {
        memcpy(zone_text, ":", 2);
        return;
    }
    char *to = zone_text;
    to += snprintf(to, sizeof zone_text, ":UTC:UTC:%+04.4ld", -(zone.Bias * 100 / 60));
    if (kind == TIME_ZONE_ID_UNKNOWN) {
        memcpy(to, ":(2099)1231", 12);
    } else {
        to = write_rule(to, zone.DaylightDate, zone.Bias + zone.StandardBias);
        write_rule(to, zone.StandardDate, zone.Bias + zone.DaylightBias);
    }
}

const char *find_process_zone() {
    if (const char *variable = copy_of_variable("TIMEZONE")) return variable;
    if (!zone_from_tz()) zone_from_system();
    return zone_text;
}

} // namespace

const char *process_zone_string() {
    const char *zone = __atomic_load_n(&process_zone, __ATOMIC_ACQUIRE);
    if (__builtin_expect(zone != nullptr, true)) return zone;
    Locked guard(numbered_lock(lock_locales));
    if (!process_zone) {
        LastErrorKept kept;
        __atomic_store_n(&process_zone, find_process_zone(), __ATOMIC_RELEASE);
    }
    return process_zone;
}

} // namespace vexrt
