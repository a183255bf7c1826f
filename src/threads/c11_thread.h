// What <threads.h> keeps of a thread.
#pragma once

#include "core/signals.h"
#include "core/thread_record.h"
#include "threads/mutex.h"

#include <stdlib.h>

namespace vexrt {

struct StorageNode;

enum ThreadState : int { thread_created = 0, thread_running = 1, thread_finished = 3 };

// A thread's record, reached from word 3 of its per-thread record and through the `thrd_t`s of the
// program. It is never freed while the library is attached: when its thread is over it goes to a
// list of spare ones, with another generation, by which old `thrd_t`s are told.
struct C11Thread {
    Mutex *storage_lock; // guards `storage` and `cursor`
    Mutex *state_lock;   // guards `state` and `detached`
    HANDLE handle;       // null or -1: none
    unsigned generation;
    int result;
    ThreadState state;
    bool detached;         // given back by the thread itself when it ends; adopted threads are
    C11Thread *next_spare; // under lock 11
    StorageNode *storage;  // the thread's values for keys that have destructors
    StorageNode *cursor;   // where the run of the destructors is
};

inline thrd_t identity_of(C11Thread &thread) { return {&thread, thread.generation}; }

// A record for a new thread: spare or fresh, not detached. Null without memory or handles.
C11Thread *obtain_thread();

// Closes the handle and keeps the record for another thread.
void give_back_thread(C11Thread &thread);

// Runs the destructors of the calling thread's values.
void run_storage_destructors(C11Thread &thread);

// Ends the calling thread: its record goes, then the thread.
[[noreturn]] void end_thread(DWORD status);

// Runs a start routine under the frame that turns exceptions into signals.
template <typename Run>
auto run_guarded(Run run) {
    constexpr int unhandled_exception = -15;
    decltype(run()) result{};
    __try {
        result = run();
    } __except (
        __xcptfilter(_exception_code(), static_cast<EXCEPTION_POINTERS *>(_exception_info()))) {
        __crt_abort(unhandled_exception);
    }
    return result;
}

} // namespace vexrt
