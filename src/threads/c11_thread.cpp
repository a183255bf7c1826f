// The records of threads and their life: created, running, finished, spare.

#include "threads/c11_thread.h"

#include "core/lock.h"
#include "heap/heap.h"
#include "threads/threads.h"

namespace vexrt {

namespace {

// Records are taken from the head and given back at the tail, so that a generation is used up as
// late as can be. All under lock 11.
C11Thread *first_spare, *last_spare;

C11Thread *take_spare() {
    Locked guard(numbered_lock(lock_thread_records));
    C11Thread *thread = first_spare;
    if (thread) {
        first_spare = thread->next_spare;
        if (!first_spare) last_spare = nullptr;
    }
    return thread;
}

void append_spare(C11Thread &thread) {
    Locked guard(numbered_lock(lock_thread_records));
    ++thread.generation;
    thread.next_spare = nullptr;
    (last_spare ? last_spare->next_spare : first_spare) = &thread;
    last_spare = &thread;
}

C11Thread *allocate_thread() {
    auto *thread = static_cast<C11Thread *>(heap_allocate(sizeof(C11Thread)));
    if (thread) *thread = C11Thread{};
    return thread;
}

void close_thread_handle(HANDLE handle) {
    if (handle && handle != INVALID_HANDLE_VALUE) CloseHandle(handle);
}

} // namespace

C11Thread *obtain_thread() {
    C11Thread *thread = take_spare();
    if (!thread) thread = allocate_thread();
    if (!thread) return nullptr;
    unsigned generation = thread->generation;
    *thread = C11Thread{};
    thread->generation = generation;
    if (create_mutex(thread->storage_lock, mtx_plain) == thrd_success &&
        create_mutex(thread->state_lock, mtx_plain) == thrd_success)
        return thread;
    give_back_thread(*thread);
    return nullptr;
}

void give_back_thread(C11Thread &thread) {
    close_thread_handle(thread.handle);
    if (thread.storage_lock) destroy_mutex(thread.storage_lock);
    if (thread.state_lock) destroy_mutex(thread.state_lock);
    append_spare(thread);
}

void free_spare_threads() {
    while (C11Thread *thread = take_spare()) heap_release(thread);
}

void finish_c11_thread(void *record) {
    auto &thread = *static_cast<C11Thread *>(record);
    if (thread.state == thread_created) return; // it never ran; its creator gives it back
    run_storage_destructors(thread);
    bool detached;
    {
        MutexLocked guard(*thread.state_lock);
        thread.state = thread_finished;
        detached = thread.detached;
    }
    if (detached) give_back_thread(thread); // else whoever joins or detaches it does
}

void end_thread(DWORD status) {
    ThreadRecord &record = thread_record();
    if (!record.c11_thread) close_thread_handle(record.thread_handle);
    free_thread_record(nullptr);
    ExitThread(status);
}

} // namespace vexrt
