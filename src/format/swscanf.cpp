// The functions that read a wide string by a format.

#include "format/list_form.h"
#include "format/scanner.h"

#include <wchar.h>

using namespace vexrt;

extern "C" {

int vswscanf(const wchar_t *s, const wchar_t *format, va_list list) {
    return scan_string(s, format, list, false);
}

int vswscanf_s(const wchar_t *s, const wchar_t *format, va_list list) {
    return scan_string(s, format, list, true);
}

int swscanf(const wchar_t *s, const wchar_t *format, ...) {
    VEXRT_WITH_ARGUMENTS(vswscanf(s, format, arguments));
}

int swscanf_s(const wchar_t *s, const wchar_t *format, ...) {
    VEXRT_WITH_ARGUMENTS(vswscanf_s(s, format, arguments));
}

} // extern "C"
