// Waiting, with the results of <threads.h>.
#pragma once

#include "platform/kernel32.h"

#include <threads.h>

namespace vexrt {

inline int wait_for(HANDLE object, DWORD milliseconds) {
    switch (WaitForSingleObject(object, milliseconds)) {
    case WAIT_OBJECT_0: return thrd_success;
    case WAIT_TIMEOUT: return thrd_timedout;
    default: return thrd_error;
    }
}

// The milliseconds from now, the current full second, to a calendar time; 0 for a second that is
// past. Never INFINITE.
DWORD milliseconds_until(const timespec &time);

inline int exchange(volatile int &word, int value) {
    return __atomic_exchange_n(&word, value, __ATOMIC_SEQ_CST);
}

// Stores `value` if the word is 0.
inline bool claim(volatile int &word, int value) {
    int expected = 0;
    return __atomic_compare_exchange_n(&word, &expected, value, false, __ATOMIC_SEQ_CST,
                                       __ATOMIC_SEQ_CST);
}

} // namespace vexrt
