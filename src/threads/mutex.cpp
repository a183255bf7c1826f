#include "threads/mutex.h"

#include "core/last_error.h"
#include "heap/heap.h"

#include <time.h>

namespace vexrt {

namespace {

bool is_recursive(const Mutex &mutex) { return mutex.type & mtx_recursive; }

bool is_type(int type) {
    int kind = type & ~mtx_recursive;
    return kind == mtx_plain || kind == mtx_timed;
}

bool is_owner(const Mutex &mutex) {
    thrd_t me = thrd_current();
    return me.__record && thrd_equal(mutex.owner, me);
}

// On two or more processors the owner is usually about to leave. The looks become rarer, because
// each takes the cache line away from it.
constexpr int longest_pause = 512;

bool claim_soon(Mutex &mutex) {
    for (int pauses = 1; pauses <= longest_pause; pauses *= 2) {
        for (int i = 0; i < pauses; ++i) __builtin_ia32_pause();
        if (mutex.state == 0 && claim(mutex.state, 1)) return true;
    }
    return false;
}

// Whoever waits marks the mutex first, and keeps the mark when it gets it: there may be others. An
// unlock that finds the mark wakes one of them; the event keeps a signal that comes before the
// wait.
int wait_for_turn(Mutex &mutex, DWORD milliseconds) {
    if (milliseconds != 0 && claim_soon(mutex)) return thrd_success;
    while (exchange(mutex.state, -1) != 0) {
        int result = wait_for(mutex.wake, milliseconds);
        if (result != thrd_success) return result;
    }
    return thrd_success;
}

void own(Mutex &mutex, thrd_t me) {
    mutex.count = 1;
    mutex.owner = me;
}

// Locks a recursive mutex if that needs no waiting.
bool try_recursive(Mutex &mutex, thrd_t me) {
    if (claim(mutex.state, 1))
        own(mutex, me);
    else if (thrd_equal(mutex.owner, me))
        ++mutex.count;
    else
        return false;
    return true;
}

int lock_recursive(Mutex &mutex, DWORD milliseconds) {
    thrd_t me = thrd_current();
    if (!me.__record) return thrd_error;
    if (try_recursive(mutex, me)) return thrd_success;
    int result = wait_for_turn(mutex, milliseconds);
    if (result == thrd_success) own(mutex, me);
    return result;
}

} // namespace

int create_mutex(Mutex *&mutex, int type) {
    mutex = nullptr;
    if (!is_type(type)) return thrd_error;
    auto *made = static_cast<Mutex *>(heap_allocate(sizeof(Mutex)));
    if (!made) return thrd_nomem;
    *made = Mutex{};
    made->type = type;
    LastErrorKept kept;
    made->wake = CreateEventW(nullptr, false, false, nullptr);
    if (!made->wake) {
        heap_release(made);
        return thrd_nomem;
    }
    mutex = made;
    return thrd_success;
}

int lock_mutex(Mutex &mutex, DWORD milliseconds) {
    if (is_recursive(mutex)) return lock_recursive(mutex, milliseconds);
    return claim(mutex.state, 1) ? thrd_success : wait_for_turn(mutex, milliseconds);
}

int try_lock_mutex(Mutex &mutex) {
    if (!is_recursive(mutex)) return claim(mutex.state, 1) ? thrd_success : thrd_busy;
    thrd_t me = thrd_current();
    if (!me.__record) return thrd_error;
    return try_recursive(mutex, me) ? thrd_success : thrd_busy;
}

// The next owner may destroy the mutex as soon as it is free.
int unlock_mutex(Mutex &mutex) {
    if (is_recursive(mutex)) {
        if (!is_owner(mutex)) return thrd_error;
        if (--mutex.count != 0) return thrd_success;
        mutex.owner = {};
    }
    HANDLE wake = mutex.wake;
    int before = exchange(mutex.state, 0);
    if (before == 0) return thrd_error;
    return before > 0 || SetEvent(wake) ? thrd_success : thrd_error;
}

int destroy_mutex(Mutex *&mutex) {
    int result = try_lock_mutex(*mutex);
    if (result != thrd_success) return result;
    if (is_recursive(*mutex) && mutex->count > 1) {
        --mutex->count;
        return thrd_busy;
    }
    Mutex *doomed = mutex;
    mutex = nullptr;
    unlock_mutex(*doomed);
    if (!CloseHandle(doomed->wake)) {
        mutex = doomed;
        return thrd_error;
    }
    heap_release(doomed);
    return thrd_success;
}

} // namespace vexrt

using namespace vexrt;

extern "C" {

int mtx_init(mtx_t *mtx, int type) { return mtx ? create_mutex(*mtx, type) : thrd_error; }
int mtx_lock(mtx_t *mtx) { return mtx && *mtx ? lock_mutex(**mtx) : thrd_error; }
int mtx_trylock(mtx_t *mtx) { return mtx && *mtx ? try_lock_mutex(**mtx) : thrd_error; }
int mtx_unlock(mtx_t *mtx) { return mtx && *mtx ? unlock_mutex(**mtx) : thrd_error; }

int mtx_timedlock(mtx_t *mtx, const timespec *ts) {
    if (!mtx || !*mtx || !ts || !((*mtx)->type & mtx_timed)) return thrd_error;
    return lock_mutex(**mtx, milliseconds_until(*ts));
}

void mtx_destroy(mtx_t *mtx) {
    if (mtx && *mtx) destroy_mutex(*mtx);
}

} // extern "C"
