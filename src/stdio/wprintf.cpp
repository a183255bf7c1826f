// The functions that format wide text to a stream.

#include "stdio/formatted.h"

#include <wchar.h>

using namespace vexrt;

extern "C" {

int vfwprintf(FILE *stream, const wchar_t *format, va_list list) {
    return print(stream, format, list, false);
}
int vfwprintf_s(FILE *stream, const wchar_t *format, va_list list) {
    return print(stream, format, list, true);
}
int vwprintf(const wchar_t *format, va_list list) { return print(stdout, format, list, false); }
int vwprintf_s(const wchar_t *format, va_list list) { return print(stdout, format, list, true); }

int fwprintf(FILE *stream, const wchar_t *format, ...) {
    VEXRT_WITH_ARGUMENTS(vfwprintf(stream, format, arguments));
}
int fwprintf_s(FILE *stream, const wchar_t *format, ...) {
    VEXRT_WITH_ARGUMENTS(vfwprintf_s(stream, format, arguments));
}
int wprintf(const wchar_t *format, ...) { VEXRT_WITH_ARGUMENTS(vwprintf(format, arguments)); }
int wprintf_s(const wchar_t *format, ...) { VEXRT_WITH_ARGUMENTS(vwprintf_s(format, arguments)); }

} // extern "C"
