// Counting semaphores, of which condition variables are made.
#pragma once

#include "threads/mutex.h"

namespace vexrt {

struct Semaphore {
    Mutex *guard;  // of `count`
    HANDLE tokens; // the system's semaphore, one token for each waiter that may go on
    int count;     // negative: so many are waiting
};

int create_semaphore(Semaphore *&semaphore, int count);

// Takes one. A wait that times out has taken one all the same: its token stays, and the next waiter
// gets it at once.
int wait_semaphore(Semaphore &semaphore, DWORD milliseconds = INFINITE);

int post_semaphore(Semaphore &semaphore, unsigned n = 1);

// Makes `semaphore` null; thrd_busy, while somebody waits, leaves it as it is.
int destroy_semaphore(Semaphore *&semaphore);

} // namespace vexrt
