// The console as the rest of the library sees it: direct input and output that bypass descriptors
// and streams.
#pragma once

#include "core/errno.h"
#include "core/lock.h"
#include "platform/kernel32.h"

#include <stddef.h>

namespace vexrt {

// The process's console, opened on first use. Whatever comes of that is kept, so that without a
// console every call fails alike: INVALID_HANDLE_VALUE.
HANDLE console_input();
HANDLE console_output();
void console_detach();

// The same; without a console EIO and INVALID_HANDLE_VALUE.
inline HANDLE or_fail_without(HANDLE console) {
    if (console == INVALID_HANDLE_VALUE) set_errno(EIO);
    return console;
}

// Writes text with the console lock held, narrow text in the console's code page. False with errno
// set unless all of it was written.
bool write_console_text(const char *text, size_t count);
bool write_console_text(const wchar_t *text, size_t count);

// The next byte (the next UTF-16 unit) of the keyboard as the getche functions give it, -1 when
// there is none.
template <typename Char>
int read_key_with_echo();
// Makes it the next one to be read again, ahead of the second byte of an extended key.
template <typename Char>
void return_key(int key);

// A call that the compiler cannot dissolve into its caller: a `__try` guards nothing but calls.
template <typename Work>
[[gnu::noinline]] auto call_guarded(Work &work) {
    return work();
}

// Does what writes to the console or changes its screen. Output of one call is not mixed with that
// of another, and the lock is given back even when an exception passes through.
template <typename Work>
auto under_console_lock(Work work) {
    Lock &lock = numbered_lock(lock_console);
    decltype(work()) result;
    lock.enter();
    __try {
        result = call_guarded(work);
    } __finally {
        lock.leave();
    }
    return result;
}

} // namespace vexrt
