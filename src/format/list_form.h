// Families that come as `f(..., format, ...)` and `vf(..., format, va_list)`.
#pragma once

#include <stdarg.h>

// The body of a function that takes its arguments itself, behind `format`: calls the one that takes
// the list `arguments` of them.
#define VEXRT_WITH_ARGUMENTS(call)                                                                 \
    va_list arguments;                                                                             \
    va_start(arguments, format);                                                                   \
    int result = call;                                                                             \
    va_end(arguments);                                                                             \
    return result
