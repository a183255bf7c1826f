// The functions that read a narrow string by a format.

#include "format/list_form.h"
#include "format/scanner.h"

#include <stdio.h>

using namespace vexrt;

extern "C" {

int vsscanf(const char *s, const char *format, va_list list) {
    return scan_string(s, format, list, false);
}

int vsscanf_s(const char *s, const char *format, va_list list) {
    return scan_string(s, format, list, true);
}

int sscanf(const char *s, const char *format, ...) {
    VEXRT_WITH_ARGUMENTS(vsscanf(s, format, arguments));
}

int sscanf_s(const char *s, const char *format, ...) {
    VEXRT_WITH_ARGUMENTS(vsscanf_s(s, format, arguments));
}

} // extern "C"
