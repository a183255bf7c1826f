#include "core/errno.h"

#include <stdio.h>

using namespace vexrt;

extern "C" void _wperror(const wchar_t *prefix) {
    const char *text = error_message(thread_record().error_number);
    if (prefix && *prefix)
        fprintf(stderr, "%ls: %s\n", prefix, text);
    else
        fprintf(stderr, "%s\n", text);
}
