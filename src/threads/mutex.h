// Mutexes: what lies behind an `mtx_t`. The library's own objects use them, too.
#pragma once

#include "platform/kernel32.h"
#include "threads/wait.h"

#include <threads.h>

struct _vexrt_mutex {
    volatile int state; // 0 free, 1 locked, -1 locked and somebody may be waiting on `wake`
    int count;          // recursive: how often the owner has locked it
    int type;
    thrd_t owner;       // recursive
    vexrt::HANDLE wake; // an event that resets itself
};

namespace vexrt {

using Mutex = _vexrt_mutex;

int create_mutex(Mutex *&mutex, int type);
int lock_mutex(Mutex &mutex, DWORD milliseconds = INFINITE);
int try_lock_mutex(Mutex &mutex);
int unlock_mutex(Mutex &mutex);

// Makes `mutex` null; thrd_busy leaves it as it is.
int destroy_mutex(Mutex *&mutex);

// Holds a plain mutex for a scope.
class MutexLocked {
public:
    explicit MutexLocked(Mutex &mutex) : mutex_(mutex) { lock_mutex(mutex); }
    ~MutexLocked() { unlock_mutex(mutex_); }
    MutexLocked(const MutexLocked &) = delete;
    MutexLocked &operator=(const MutexLocked &) = delete;

private:
    Mutex &mutex_;
};

} // namespace vexrt
