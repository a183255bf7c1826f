// The system's last-error value belongs to the program: what the library asks of the system on its
// own account must leave it alone.
#pragma once

#include "platform/kernel32.h"

namespace vexrt {

// Puts the value back at the end of a scope.
class LastErrorKept {
public:
    LastErrorKept() : value_(GetLastError()) {}
    ~LastErrorKept() { SetLastError(value_); }
    LastErrorKept(const LastErrorKept &) = delete;
    LastErrorKept &operator=(const LastErrorKept &) = delete;

private:
    DWORD value_;
};

} // namespace vexrt
