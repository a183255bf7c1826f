// The functions that format narrow text to a buffer.

#include "format/buffer_output.h"
#include "format/list_form.h"

#include <stdio.h>

using namespace vexrt;

extern "C" {

int vsprintf(char *s, const char *format, va_list list) {
    return format_exact(s, SIZE_MAX, format, list);
}

int vsnprintf(char *s, size_t n, const char *format, va_list list) {
    return format_truncated(s, n, format, list, false);
}

int vasprintf(char **s, const char *format, va_list list) {
    return format_allocated(s, format, list);
}

int vsprintf_s(char *s, rsize_t n, const char *format, va_list list) {
    return format_exact_s(s, n, format, list);
}

int vsnprintf_s(char *s, rsize_t n, const char *format, va_list list) {
    return format_truncated_s(s, n, format, list);
}

int sprintf(char *s, const char *format, ...) {
    VEXRT_WITH_ARGUMENTS(vsprintf(s, format, arguments));
}

int snprintf(char *s, size_t n, const char *format, ...) {
    VEXRT_WITH_ARGUMENTS(vsnprintf(s, n, format, arguments));
}

int asprintf(char **s, const char *format, ...) {
    VEXRT_WITH_ARGUMENTS(vasprintf(s, format, arguments));
}

int sprintf_s(char *s, rsize_t n, const char *format, ...) {
    VEXRT_WITH_ARGUMENTS(vsprintf_s(s, n, format, arguments));
}

int snprintf_s(char *s, rsize_t n, const char *format, ...) {
    VEXRT_WITH_ARGUMENTS(vsnprintf_s(s, n, format, arguments));
}

} // extern "C"
