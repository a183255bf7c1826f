// thrd_create and its family.

#include "core/errno.h"
#include "core/fatal.h"
#include "core/lock.h"
#include "threads/c11_thread.h"

#include <stdlib.h>

extern "C" int __thrd_create_omp(thrd_t *thr, thrd_start_t func, void *arg, size_t stack_size);

namespace vexrt {

namespace {

DWORD __stdcall start_thread(void *parameter) {
    auto *record = static_cast<ThreadRecord *>(parameter);
    static_cast<C11Thread *>(record->c11_thread)->state = thread_running;
    if (!install_thread_record(record)) fatal(FatalCode::corrupt_thread_data);
    thrd_exit(run_guarded([record] {
        return reinterpret_cast<thrd_start_t>(record->start_routine)(record->start_argument);
    }));
}

// Starts a thread for `thread`, whose identity is in *thr before it runs.
int start(C11Thread &thread, thrd_t *thr, thrd_start_t func, void *arg, size_t stack_size) {
    ThreadRecord *record = new_thread_record();
    if (!record) return thrd_nomem;
    record->start_routine = reinterpret_cast<void *>(func);
    record->start_argument = arg;
    record->c11_thread = &thread;
    thread.handle = CreateThread(nullptr, stack_size, start_thread, record, CREATE_SUSPENDED,
                                 &record->thread_id);
    record->thread_handle = thread.handle;
    thrd_t before = *thr;
    *thr = identity_of(thread);
    if (thread.handle && ResumeThread(thread.handle) != static_cast<DWORD>(-1)) return thrd_success;
    *thr = before;
    free_thread_record(record);
    return thrd_error;
}

// The record of a thread that may be joined and detached; null for any other `thrd_t`. Under
// lock 11.
C11Thread *find_thread(thrd_t thr) {
    auto *thread = static_cast<C11Thread *>(thr.__record);
    return thread && thread->generation == thr.__generation && !thread->detached ? thread : nullptr;
}

// Marks a thread as detached unless another thread has done so meanwhile.
C11Thread *claim_thread(thrd_t thr) {
    Locked guard(numbered_lock(lock_thread_records));
    C11Thread *thread = find_thread(thr);
    if (thread) thread->detached = true;
    return thread;
}

HANDLE handle_to_join(thrd_t thr) {
    Locked guard(numbered_lock(lock_thread_records));
    C11Thread *thread = find_thread(thr);
    return thread && thread != thread_record().c11_thread ? thread->handle : nullptr;
}

// Marks a thread as detached. `finished`: it will not give itself back any more.
C11Thread *detach_thread(thrd_t thr, bool &finished) {
    Locked guard(numbered_lock(lock_thread_records));
    C11Thread *thread = find_thread(thr);
    if (!thread) return nullptr;
    MutexLocked state_guard(*thread->state_lock);
    finished = thread->state == thread_finished;
    thread->detached = true;
    return thread;
}

// A record for a thread that was started by other means.
C11Thread *adopt(ThreadRecord &record) {
    C11Thread *thread = obtain_thread();
    if (!thread) return nullptr;
    thread->detached = true;
    thread->state = thread_running;
    thread->handle = record.thread_handle;
    record.c11_thread = thread;
    return thread;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

int __thrd_create_omp(thrd_t *thr, thrd_start_t func, void *arg, size_t stack_size) {
    if (!thr || !func) return thrd_error;
    C11Thread *thread = obtain_thread();
    if (!thread) return thrd_nomem;
    int result = start(*thread, thr, func, arg, stack_size);
    if (result != thrd_success) give_back_thread(*thread);
    return result;
}

int thrd_create(thrd_t *thr, thrd_start_t func, void *arg) {
    return __thrd_create_omp(thr, func, arg, 0);
}

thrd_t thrd_current() {
    ThreadRecord &record = thread_record();
    auto *thread = static_cast<C11Thread *>(record.c11_thread);
    if (__builtin_expect(!thread, false)) thread = adopt(record);
    return thread ? identity_of(*thread) : thrd_t{};
}

int thrd_equal(thrd_t thr0, thrd_t thr1) {
    return thr0.__record == thr1.__record && thr0.__generation == thr1.__generation;
}

// The handle is waited for without a lock; of several that join at once, one gets the thread.
int thrd_join(thrd_t thr, int *res) {
    HANDLE handle = handle_to_join(thr);
    if (!handle || wait_for(handle, INFINITE) != thrd_success) return thrd_error;
    C11Thread *thread = claim_thread(thr);
    if (!thread) return thrd_error;
    if (res) *res = thread->result;
    give_back_thread(*thread);
    return thrd_success;
}

// A thread that has finished may still be on its way out, and use its record.
int thrd_detach(thrd_t thr) {
    bool finished = false;
    C11Thread *thread = detach_thread(thr, finished);
    if (!thread) return thrd_error;
    if (finished) {
        wait_for(thread->handle, INFINITE);
        give_back_thread(*thread);
    }
    return thrd_success;
}

void thrd_exit(int res) {
    if (auto *thread = static_cast<C11Thread *>(thread_record().c11_thread)) thread->result = res;
    end_thread(static_cast<DWORD>(res));
}

void thrd_yield() { Sleep(0); }

} // extern "C"
