#pragma once

#include "platform/kernel32.h"

namespace vexrt {

// Gives the console's input another mode for a scope.
class ConsoleMode {
public:
    ConsoleMode(HANDLE console, DWORD mode)
        : console_(console), known_(GetConsoleMode(console, &saved_)) {
        SetConsoleMode(console, mode);
    }
    ~ConsoleMode() {
        if (known_) SetConsoleMode(console_, saved_);
    }
    ConsoleMode(const ConsoleMode &) = delete;
    ConsoleMode &operator=(const ConsoleMode &) = delete;

private:
    HANDLE console_;
    DWORD saved_;
    bool known_;
};

} // namespace vexrt
