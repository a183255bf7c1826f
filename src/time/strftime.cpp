#include "core/errno.h"
#include "time/time_text.h"

#include <wchar.h>

namespace vexrt {

namespace {

template <typename Char>
size_t format_for_locale(Char *s, size_t size, const Char *format, const tm *time) {
    if (!s || !format || !time) {
        set_errno(EINVAL);
        return 0;
    }
    return size ? format_time(s, size, format, *time, *thread_record().locale) : 0;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

size_t strftime(char *s, size_t maxsize, const char *format, const tm *timeptr) {
    return format_for_locale(s, maxsize, format, timeptr);
}

size_t wcsftime(wchar_t *s, size_t maxsize, const wchar_t *format, const tm *timeptr) {
    return format_for_locale(s, maxsize, format, timeptr);
}

} // extern "C"
