// asctime, ctime, _strdate, _strtime and their kin: formats of the "C" locale, whatever the
// thread's locale is.

#include "core/constraint.h"
#include "core/errno.h"
#include "heap/heap.h"
#include "time/calendar.h"
#include "time/time_text.h"

#include <stdlib.h>
#include <time.h>

namespace vexrt {

namespace {

constexpr size_t asctime_size = 26, date_size = 9; // with the terminator

template <typename Char>
struct Formats;

template <>
struct Formats<char> {
    static constexpr const char *full = "%c\n", *date = "%m/%d/%y", *time = "%H:%M:%S";
    static constexpr const char *without_memory = "Mon Jan 01 02:03:04 1905\n";
};

template <>
struct Formats<wchar_t> {
    static constexpr const wchar_t *full = L"%c\n", *date = L"%m/%d/%y", *time = L"%H:%M:%S";
    static constexpr const wchar_t *without_memory = L"Mon Jan 01 02:03:04 1905\n";
};

// The thread's buffers, made together.
struct OwnTexts {
    char narrow[asctime_size];
    wchar_t wide[asctime_size];

    char *get(char) { return narrow; }
    wchar_t *get(wchar_t) { return wide; }
};

template <typename Char>
Char *own_text() {
    char *&own = thread_record().asctime_buffer;
    if (!own) own = static_cast<char *>(heap_allocate(sizeof(OwnTexts)));
    return own ? reinterpret_cast<OwnTexts *>(own)->get(Char()) : nullptr;
}

template <typename Char>
Char *to_own_text(const tm *time) {
    if (!time) {
        set_errno(EINVAL);
        return nullptr;
    }
    Char *text = own_text<Char>();
    if (!text) return const_cast<Char *>(Formats<Char>::without_memory);
    format_time(text, asctime_size, Formats<Char>::full, *time, c_locale);
    return text;
}

template <typename Char>
Char *time_to_own_text(const time_t *timer) {
    return to_own_text<Char>(localtime(timer));
}

bool is_valid(const tm &time) {
    auto below = [](int value, unsigned limit) { return static_cast<unsigned>(value) < limit; };
    return below(time.tm_sec, 61) && below(time.tm_min, 60) && below(time.tm_hour, 24) &&
           time.tm_mday >= 1 && time.tm_mday <= 31 && below(time.tm_mon, 12) &&
           below(time.tm_year, 10000) && below(time.tm_wday, 7) && below(time.tm_yday, 366);
}

// The checks that all the bounds-checked forms begin with; the text is empty after any failure.
template <typename Char>
bool is_buffer(Char *s, rsize_t size) {
    if (!s || size == 0 || size > RSIZE_MAX) return false;
    *s = 0;
    return true;
}

template <typename Char>
errno_t to_text(Char *s, rsize_t size, const tm *time) {
    if (!is_buffer(s, size) || !time) return report_constraint(EINVAL);
    if (size < asctime_size || !is_valid(*time)) return report_constraint(ERANGE);
    format_time(s, size, Formats<Char>::full, *time, c_locale);
    return 0;
}

template <typename Char>
errno_t time_to_text(Char *s, rsize_t size, const time_t *timer) {
    tm local;
    if (timer) break_down_local(*timer, local);
    return to_text(s, size, timer ? &local : nullptr);
}

template <typename Char>
void format_now(Char *s, const Char *format) {
    tm local;
    break_down_local(time(nullptr), local);
    format_time(s, date_size, format, local, c_locale);
}

template <typename Char>
Char *now_to_text(Char *s, const Char *format) {
    if (s)
        format_now(s, format);
    else
        set_errno(EINVAL);
    return s;
}

template <typename Char>
errno_t now_to_checked_text(Char *s, rsize_t size, const Char *format) {
    if (!is_buffer(s, size)) return report_constraint(EINVAL);
    if (size < date_size) return report_constraint(ERANGE);
    format_now(s, format);
    return 0;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

char *asctime(const tm *timeptr) { return to_own_text<char>(timeptr); }
wchar_t *_wasctime(const tm *timeptr) { return to_own_text<wchar_t>(timeptr); }

char *ctime(const time_t *timer) { return time_to_own_text<char>(timer); }
wchar_t *_wctime(const time_t *timer) { return time_to_own_text<wchar_t>(timer); }

errno_t asctime_s(char *s, rsize_t maxsize, const tm *timeptr) {
    return to_text(s, maxsize, timeptr);
}
errno_t _wasctime_s(wchar_t *s, rsize_t maxsize, const tm *timeptr) {
    return to_text(s, maxsize, timeptr);
}

errno_t ctime_s(char *s, rsize_t maxsize, const time_t *timer) {
    return time_to_text(s, maxsize, timer);
}
errno_t _wctime_s(wchar_t *s, rsize_t maxsize, const time_t *timer) {
    return time_to_text(s, maxsize, timer);
}

char *_strdate(char *buf) { return now_to_text(buf, Formats<char>::date); }
char *_strtime(char *buf) { return now_to_text(buf, Formats<char>::time); }
wchar_t *_wcsdate(wchar_t *buf) { return now_to_text(buf, Formats<wchar_t>::date); }
wchar_t *_wcstime(wchar_t *buf) { return now_to_text(buf, Formats<wchar_t>::time); }

errno_t _strdate_s(char *buf, rsize_t size) {
    return now_to_checked_text(buf, size, Formats<char>::date);
}
errno_t _strtime_s(char *buf, rsize_t size) {
    return now_to_checked_text(buf, size, Formats<char>::time);
}
errno_t _wcsdate_s(wchar_t *buf, rsize_t size) {
    return now_to_checked_text(buf, size, Formats<wchar_t>::date);
}
errno_t _wcstime_s(wchar_t *buf, rsize_t size) {
    return now_to_checked_text(buf, size, Formats<wchar_t>::time);
}

} // extern "C"
