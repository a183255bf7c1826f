// The system's file times and calendar times. Both ways go through local time, as the mode of the
// day's daylight saving has it.
#pragma once

#include "platform/kernel32.h"

#include <time.h>

namespace vexrt {

// -1 for a time that is zero or beyond the calendar.
time_t calendar_time_of(const FILETIME &time);
bool file_time_of(time_t time, FILETIME &to);

} // namespace vexrt
