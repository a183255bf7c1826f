#include "core/lock.h"

#include "core/fatal.h"
#include "core/last_error.h"
#include "heap/heap.h"

namespace vexrt {

ThreadingMode threading_mode;
Lock static_locks[static_lock_count];
Lock *numbered_locks[lock_count];

namespace {

// On two or more processors the owner is usually about to leave: look again for a while before
// asking the system to wait. The looks become rarer, because each takes the cache line away from an
// owner that may have many short things to do: it gets through them in a row.
constexpr int longest_pause = 1024;

DWORD exchange(volatile DWORD &word, DWORD value) {
    return __atomic_exchange_n(&word, value, __ATOMIC_SEQ_CST);
}

bool try_claim(volatile DWORD &word) {
    DWORD expected = 0;
    return __atomic_compare_exchange_n(&word, &expected, 1, false, __ATOMIC_ACQUIRE,
                                       __ATOMIC_RELAXED);
}

// The event that waiters of a lock sleep on; made by whoever is first.
HANDLE event_of(HANDLE volatile &slot) {
    if (HANDLE event = slot) return event;
    HANDLE made = CreateEventW(nullptr, false, false, nullptr);
    if (!made) return nullptr;
    HANDLE expected = nullptr;
    if (__atomic_compare_exchange_n(&slot, &expected, made, false, __ATOMIC_SEQ_CST,
                                    __ATOMIC_SEQ_CST))
        return made;
    CloseHandle(made);
    return expected;
}

// A plain operation takes microseconds. A first thread that is still in one after so many looks
// (the later ones a millisecond apart) has been stopped there by a fault or a debugger, and the
// arriving thread may be the one that is to deal with that: it goes on.
constexpr int quick_looks = 64, all_looks = 5000;

// Stops the first thread for a moment and asks whether it is in a plain operation. A thread that
// has been stopped and whose registers have been read has executed a memory barrier; the cheaper
// way to force one, FlushProcessWriteBuffers, is not there on every system that has the function.
bool is_in_plain_section(HANDLE thread) {
    if (SuspendThread(thread) == static_cast<DWORD>(-1)) return false; // it has ended
    CONTEXT context{};
    context.ContextFlags = CONTEXT_CONTROL;
    bool result = !GetThreadContext(thread, &context) || threading_mode.plain_section;
    ResumeThread(thread);
    return result;
}

// Returns once the first thread has seen `many_threads`.
void wait_for_first_thread() {
    constexpr DWORD access = THREAD_SUSPEND_RESUME | THREAD_GET_CONTEXT;
    HANDLE thread = OpenThread(access, false, threading_mode.first_thread);
    if (!thread) return; // it has ended, and with it any section it was in
    for (int look = 0; look < all_looks && is_in_plain_section(thread); ++look)
        Sleep(look < quick_looks ? 0 : 1);
    CloseHandle(thread);
}

} // namespace

void Lock::enter_shared(DWORD me) {
    if (try_enter_shared(me)) return;
    enter_contended();
    take(me);
}

bool Lock::try_enter_shared(DWORD me) {
    if (owner == me) {
        ++depth;
        return true;
    }
    if (!try_claim(state)) return false;
    take(me);
    return true;
}

[[gnu::noinline]] void Lock::enter_contended() {
    if (threading_mode.owners_gone) return; // whoever held it will never come back
    for (int pauses = 1; pauses <= longest_pause; pauses *= 2) {
        for (int i = 0; i < pauses; ++i) __builtin_ia32_pause();
        if (state == 0 && try_claim(state)) return;
    }
    LastErrorKept kept;
    // The event must be there before the owner is told of a waiter: it signals only what it finds.
    HANDLE wake = event_of(event);
    while (exchange(state, 2) != 0) {
        // Without an event, waiting degrades to polling; it still ends.
        if (wake)
            WaitForSingleObject(wake, INFINITE);
        else
            Sleep(1);
    }
}

void Lock::leave_shared() {
    if (--depth != 0) return;
    owner = 0;
    if (exchange(state, 0) != 2) return;
    if (HANDLE wake = event) SetEvent(wake);
}

void Lock::destroy() {
    if (event) CloseHandle(event);
    state = 0;
    owner = 0;
    depth = 0;
    event = nullptr;
}

void note_second_thread() {
    if (threading_mode.many_threads) return;
    threading_mode.many_threads = true;
    wait_for_first_thread();
}

void note_other_threads_gone() {
    threading_mode.many_threads = true; // plain operations would trust a dead owner's counts
    threading_mode.plain_section = false;
    threading_mode.owners_gone = true;
}

Lock *create_numbered_lock(unsigned number) {
    auto *made = static_cast<Lock *>(heap_allocate(sizeof(Lock)));
    if (!made) return nullptr;
    *made = Lock{};
    {
        Locked guard(static_locks[lock_creation]);
        if (!numbered_locks[number]) return numbered_locks[number] = made;
    }
    heap_release(made); // another thread was first
    return numbered_locks[number];
}

void fail_without_lock() { fatal(FatalCode::out_of_memory); }

Lock &stream_lock(unsigned index) {
    if (index >= stream_lock_count) fatal(FatalCode::bad_stream_lock);
    return numbered_lock(lock_first_stream + index);
}

void create_static_locks() {
    for (unsigned i = 0; i < static_lock_count; ++i) numbered_locks[i] = &static_locks[i];
}

void destroy_locks() {
    for (unsigned i = static_lock_count; i < lock_count; ++i) {
        Lock *lock = numbered_locks[i];
        if (!lock) continue;
        lock->destroy();
        heap_release(lock);
        numbered_locks[i] = nullptr;
    }
    for (unsigned i = 0; i < static_lock_count; ++i) static_locks[i].destroy();
}

} // namespace vexrt
