// The functions that format wide text to a buffer.

#include "format/buffer_output.h"
#include "format/list_form.h"

#include <wchar.h>

using namespace vexrt;

extern "C" {

int vswprintf(wchar_t *s, size_t n, const wchar_t *format, va_list list) {
    return format_exact(s, n, format, list);
}

int vsnwprintf(wchar_t *s, size_t n, const wchar_t *format, va_list list) {
    return format_truncated(s, n, format, list, false);
}

int vaswprintf(wchar_t **s, const wchar_t *format, va_list list) {
    return format_allocated(s, format, list);
}

int vswprintf_s(wchar_t *s, rsize_t n, const wchar_t *format, va_list list) {
    return format_exact_s(s, n, format, list);
}

int vsnwprintf_s(wchar_t *s, rsize_t n, const wchar_t *format, va_list list) {
    return format_truncated_s(s, n, format, list);
}

int swprintf(wchar_t *s, size_t n, const wchar_t *format, ...) {
    VEXRT_WITH_ARGUMENTS(vswprintf(s, n, format, arguments));
}

int snwprintf(wchar_t *s, size_t n, const wchar_t *format, ...) {
    VEXRT_WITH_ARGUMENTS(vsnwprintf(s, n, format, arguments));
}

int aswprintf(wchar_t **s, const wchar_t *format, ...) {
    VEXRT_WITH_ARGUMENTS(vaswprintf(s, format, arguments));
}

int swprintf_s(wchar_t *s, rsize_t n, const wchar_t *format, ...) {
    VEXRT_WITH_ARGUMENTS(vswprintf_s(s, n, format, arguments));
}

int snwprintf_s(wchar_t *s, rsize_t n, const wchar_t *format, ...) {
    VEXRT_WITH_ARGUMENTS(vsnwprintf_s(s, n, format, arguments));
}

} // extern "C"
