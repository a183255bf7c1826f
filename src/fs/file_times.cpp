#include "fs/file_times.h"

namespace vexrt {

time_t calendar_time_of(const FILETIME &time) {
    constexpr auto unknown = static_cast<time_t>(-1);
    FILETIME local;
    SYSTEMTIME parts;
    if (!(time.low | time.high) || !FileTimeToLocalFileTime(&time, &local) ||
        !FileTimeToSystemTime(&local, &parts))
        return unknown;
    tm broken = {};
    broken.tm_sec = parts.wSecond;
    broken.tm_min = parts.wMinute;
    broken.tm_hour = parts.wHour;
    broken.tm_mday = parts.wDay;
    broken.tm_mon = parts.wMonth - 1;
    broken.tm_year = parts.wYear - 1900;
    broken.tm_wday = parts.wDayOfWeek;
    broken.tm_isdst = -1;
    return mktime(&broken);
}

bool file_time_of(time_t time, FILETIME &to) {
    tm broken;
    if (!localtime_s(&time, &broken)) return false;
    SYSTEMTIME parts = {};
    parts.wSecond = static_cast<WORD>(broken.tm_sec);
    parts.wMinute = static_cast<WORD>(broken.tm_min);
    parts.wHour = static_cast<WORD>(broken.tm_hour);
    parts.wDay = static_cast<WORD>(broken.tm_mday);
    parts.wMonth = static_cast<WORD>(broken.tm_mon + 1);
    parts.wYear = static_cast<WORD>(broken.tm_year + 1900);
    FILETIME local;
    return SystemTimeToFileTime(&parts, &local) && LocalFileTimeToFileTime(&local, &to);
}

} // namespace vexrt
