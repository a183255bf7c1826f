#include "time/calendar.h"

#include "core/constraint.h"
#include "core/errno.h"
#include "core/fatal.h"
#include "heap/heap.h"
#include "time/zone.h"

#include <limits.h>

namespace vexrt {

// Divisions by constants only, and no loops: the year from cycles of 1461 days that begin with a
// leap year, the month from a guess that is right or one too low.
void break_down(time_t t, tm &to) {
    constexpr unsigned first_year = 68, days_to_1970 = 366 + 365; // from 1968
    constexpr unsigned monday_1900 = 25568; // days from 1970 back to a Sunday, 1899-12-31
    unsigned days = t / seconds_per_day;
    unsigned seconds = t % seconds_per_day;
    unsigned from_1968 = days + days_to_1970;
    unsigned year = from_1968 * 4 / 1461;
    unsigned day = from_1968 - (year * 1461 + 3) / 4;
    const short *before = days_before_month[year % 4 == 0];
    unsigned month = day / 32;
    month += day >= static_cast<unsigned>(before[month + 1]);

    to.tm_sec = static_cast<int>(seconds % 60);
    to.tm_min = static_cast<int>(seconds / 60 % 60);
    to.tm_hour = static_cast<int>(seconds / seconds_per_hour);
    to.tm_mday = static_cast<int>(day) - before[month] + 1;
    to.tm_mon = static_cast<int>(month);
    to.tm_year = static_cast<int>(year + first_year);
    to.tm_wday = static_cast<int>((days + monday_1900) % 7);
    to.tm_yday = static_cast<int>(day);
}

void break_down_local(time_t t, tm &to) {
    Zone zone = current_zone();
    t += static_cast<time_t>(zone.offset_minutes * 60);
    break_down(t, to);
    to.tm_isdst = zone.rules ? is_daylight(zone.rules, zone.offset_minutes, to) : -1;
    if (to.tm_isdst > 0) break_down(t + seconds_per_hour, to);
}

namespace {

// Seconds from 1900 to a date in month `month` (0 to 11) of year `year`. The fields of `from` may
// have any value.
template <typename Number>
Number seconds_since_1900(int year, int month, const tm &from) {
    Number days = leap_days_before(year) + days_before_month[is_leap_year(year)][month] - 1;
    days += from.tm_mday;
    return days * seconds_per_day + static_cast<Number>(year) * (365 * seconds_per_day) +
           static_cast<Number>(from.tm_hour) * seconds_per_hour +
           static_cast<Number>(from.tm_min) * 60 + from.tm_sec;
}

// The same as a `time_t` in `t`: false for a date before 1900. One before 1970 or after 2106 wraps.
template <typename Number>
bool make_time(int year, int month, const tm &from, time_t &t) {
    constexpr long long seconds_1900_to_1970 = 2208988800;
    Number seconds = seconds_since_1900<Number>(year, month, from);
    if (!(seconds >= 0)) return false;
    t = static_cast<time_t>(static_cast<long long>(seconds - seconds_1900_to_1970));
    return true;
}

// The interface is defined by arithmetic in `double`, whose roundings show in years beyond some
// hundred million. Below that integers give the same, faster.
constexpr int exact_years = 1 << 27;

bool make_normalised_time(const tm &from, time_t &t) {
    int carry = from.tm_mon / 12, month = from.tm_mon % 12;
    if (month < 0) {
        month += 12;
        --carry;
    }
    int year;
    if (__builtin_add_overflow(from.tm_year, carry, &year)) return false;
    if (year > -exact_years && year < exact_years)
        return make_time<long long>(year, month, from, t);
    return make_time<double>(year, month, from, t);
}

// The `struct tm` that gmtime and localtime return.
tm &own_tm() {
    void *&own = thread_record().calendar_state;
    if (!own) own = heap_allocate(sizeof(tm));
    if (!own) fatal(FatalCode::out_of_memory);
    return *static_cast<tm *>(own);
}

void break_down_universal(time_t t, tm &to) {
    break_down(t, to);
    to.tm_isdst = 0;
}

using Conversion = void (*)(time_t, tm &);

template <Conversion convert>
tm *to_own(const time_t *timer) {
    if (!timer) {
        set_errno(EINVAL);
        return nullptr;
    }
    tm &to = own_tm();
    convert(*timer, to);
    return &to;
}

template <Conversion convert>
tm *checked(const time_t *timer, tm *result) {
    if (!timer || !result) {
        report_constraint(EINVAL);
        return nullptr;
    }
    convert(*timer, *result);
    return result;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

tm *gmtime(const time_t *timer) { return to_own<break_down_universal>(timer); }
tm *localtime(const time_t *timer) { return to_own<break_down_local>(timer); }

tm *gmtime_s(const time_t *timer, tm *result) {
    return checked<break_down_universal>(timer, result);
}
tm *localtime_s(const time_t *timer, tm *result) {
    return checked<break_down_local>(timer, result);
}

// Whether daylight saving is in force is the caller's word, not the zone's.
time_t mktime(tm *timeptr) {
    constexpr time_t failed = static_cast<time_t>(-1);
    time_t t;
    if (!timeptr) {
        set_errno(EINVAL);
        return failed;
    }
    if (!make_normalised_time(*timeptr, t)) return failed;
    break_down(t, *timeptr);
    if (timeptr->tm_isdst > 0) t -= seconds_per_hour;
    return t - static_cast<time_t>(current_zone().offset_minutes * 60);
}

} // extern "C"
