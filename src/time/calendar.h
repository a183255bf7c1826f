// The calendar: seconds since 1970 to days, months and years.
//
// `time_t` is unsigned, so that all dates lie between 1970 and 2106. In this calendar every fourth
// year is a leap year, 2100 among them; the one exception is 1900. Years are counted from 1900.
#pragma once

#include <time.h>

namespace vexrt {

constexpr int seconds_per_day = 86400, seconds_per_hour = 3600;

constexpr bool is_leap_year(int year) { return year % 4 == 0 && year != 0; }
constexpr int leap_days_before(int year) { return year > 0 ? (year - 1) / 4 : 0; }

// Days of the year before each month, and in all twelve; for common and leap years.
inline constexpr short days_before_month[2][13] = {
    {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365},
    {0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335, 366},
};

// Fills in everything but `tm_isdst`.
void break_down(time_t t, tm &to);

// The same for the current zone, with `tm_isdst`.
void break_down_local(time_t t, tm &to);

} // namespace vexrt
