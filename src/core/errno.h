// `errno` as the rest of the library sets it.
#pragma once

#include "core/thread_record.h"

#include <errno.h>

namespace vexrt {

inline void set_errno(int code) { thread_record().error_number = code; }

// The conventional failure: errno set and -1.
inline int fail_with(int code) {
    set_errno(code);
    return -1;
}

// Sets errno from an operating-system error code.
void map_os_error(DWORD code);

// -1, with errno from the system's last error.
inline int fail_with_last_error() {
    map_os_error(GetLastError());
    return -1;
}

// The texts behind strerror: "Unknown error" for negative numbers and those above 255.
const char *error_message(int code);
const wchar_t *wide_error_message(int code);

} // namespace vexrt
