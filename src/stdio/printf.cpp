// The functions that format narrow text to a stream.

#include "stdio/formatted.h"

using namespace vexrt;

extern "C" {

int vfprintf(FILE *stream, const char *format, va_list list) {
    return print(stream, format, list, false);
}

int vfprintf_s(FILE *stream, const char *format, va_list list) {
    return print(stream, format, list, true);
}

int vprintf(const char *format, va_list list) { return print(stdout, format, list, false); }
int vprintf_s(const char *format, va_list list) { return print(stdout, format, list, true); }

int fprintf(FILE *stream, const char *format, ...) {
    VEXRT_WITH_ARGUMENTS(vfprintf(stream, format, arguments));
}

int fprintf_s(FILE *stream, const char *format, ...) {
    VEXRT_WITH_ARGUMENTS(vfprintf_s(stream, format, arguments));
}

int printf(const char *format, ...) { VEXRT_WITH_ARGUMENTS(vprintf(format, arguments)); }
int printf_s(const char *format, ...) { VEXRT_WITH_ARGUMENTS(vprintf_s(format, arguments)); }

} // extern "C"
