// Dates and times as text.
#pragma once

#include "locale/locale_record.h"
#include "time/list.h"

#include <stddef.h>
#include <time.h>

namespace vexrt {

// Formats `time` with a locale's time data into `size` elements. Returns the number of characters
// in front of the terminator. Text that does not fit is cut, and the result is then 0.
template <typename Char>
size_t format_time(Char *to, size_t size, const Char *format, const tm &time,
                   const LocaleRecord &data);

// The ISO 8601 week of a date, 1 to 53, and the year that the week belongs to, since 1900.
struct Week {
    long long year;
    int number;
};
Week iso_week(const tm &time);

// Weeks that begin on Sunday (0) or Monday (1), counted from the first such day of the year.
long long week_of_year(const tm &time, int first_day);

// The era of a date, as the locale's era list has it.
struct Era {
    bool matches; // else everything is empty
    long long year;
    Item name, format;
};
Era find_era(const char *eras, const tm &time);

} // namespace vexrt
