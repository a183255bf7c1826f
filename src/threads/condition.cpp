// Condition variables. Waiters pass the gate, are counted as blocked, and sleep on the queue. A
// signal moves some of them to those that are to be unblocked, closes the gate so that nobody who
// comes later can take a token meant for them, and posts the tokens; the last of them opens the
// gate again. Waiters that time out leave their trace in `gone`, and are taken off the blocked ones
// when that is next needed.

#include "core/lock.h"
#include "heap/heap.h"
#include "threads/semaphore.h"

#include <limits.h>

struct _vexrt_condition {
    unsigned blocked;
    unsigned gone;
    unsigned to_unblock;
    vexrt::Semaphore *queue;    // nobody to begin with
    vexrt::Semaphore *gate;     // open
    vexrt::Mutex *unblock;      // held while the counts change, but for `blocked` at the gate
    _vexrt_condition *next;     // in the list of all of them,
    _vexrt_condition *previous; // under lock 10
};

namespace vexrt {

namespace {

using Condition = _vexrt_condition;

constexpr unsigned most_gone = 0x3FFFFFFF;

struct ConditionList {
    Condition *head, *tail;

    void append(Condition &condition) {
        condition.next = nullptr;
        condition.previous = tail;
        (tail ? tail->next : head) = &condition;
        tail = &condition;
    }

    void remove(Condition &condition) {
        (condition.previous ? condition.previous->next : head) = condition.next;
        (condition.next ? condition.next->previous : tail) = condition.previous;
    }
};
ConditionList all_conditions;

int create_parts(Condition &condition) {
    int result = create_semaphore(condition.gate, 1);
    if (result == thrd_success) result = create_semaphore(condition.queue, 0);
    if (result == thrd_success) result = create_mutex(condition.unblock, mtx_plain);
    if (result == thrd_success) return result;
    if (condition.queue) destroy_semaphore(condition.queue);
    if (condition.gate) destroy_semaphore(condition.gate);
    return result;
}

int create_condition(Condition *&condition) {
    condition = nullptr;
    auto *made = static_cast<Condition *>(heap_allocate(sizeof(Condition)));
    if (!made) return thrd_nomem;
    *made = Condition{};
    int result = create_parts(*made);
    if (result != thrd_success) {
        heap_release(made);
        return result;
    }
    Locked guard(numbered_lock(lock_conditions));
    all_conditions.append(*made);
    condition = made;
    return thrd_success;
}

void forget_gone(Condition &condition) {
    condition.blocked -= condition.gone;
    condition.gone = 0;
}

// What a waiter does that has left the queue, by a token or by a time-out. It opens the gate when
// it is the last that was to be unblocked.
void leave_queue(Condition &condition) {
    unsigned left;
    {
        MutexLocked guard(*condition.unblock);
        left = condition.to_unblock;
        if (left != 0) {
            --condition.to_unblock;
        } else if (++condition.gone == most_gone) {
            wait_semaphore(*condition.gate);
            forget_gone(condition);
            post_semaphore(*condition.gate);
        }
    }
    if (left == 1) post_semaphore(*condition.gate);
}

int wait_condition(Condition &condition, Mutex &mutex, DWORD milliseconds) {
    int result = wait_semaphore(*condition.gate);
    if (result != thrd_success) return result;
    ++condition.blocked;
    post_semaphore(*condition.gate);
    result = unlock_mutex(mutex);
    if (result == thrd_success) result = wait_semaphore(*condition.queue, milliseconds);
    leave_queue(condition);
    return result == thrd_success ? lock_mutex(mutex) : result;
}

// How many of at most `limit` waiters are moved to those to be unblocked.
unsigned choose_waiters(Condition &condition, unsigned limit) {
    MutexLocked guard(*condition.unblock);
    if (condition.to_unblock == 0) {
        if (condition.blocked <= condition.gone) return 0;
        wait_semaphore(*condition.gate);
        forget_gone(condition);
    }
    unsigned chosen = condition.blocked < limit ? condition.blocked : limit;
    condition.to_unblock += chosen;
    condition.blocked -= chosen;
    return chosen;
}

int release_waiters(cnd_t *cond, unsigned limit) {
    if (!cond || !*cond) return thrd_error;
    unsigned chosen = choose_waiters(**cond, limit);
    return chosen ? post_semaphore(*(*cond)->queue, chosen) : thrd_success;
}

// Whether nobody is waiting; the gate is then closed and the mutex held.
bool close_condition(Condition &condition) {
    if (wait_semaphore(*condition.gate) != thrd_success) return false;
    if (try_lock_mutex(*condition.unblock) == thrd_success) {
        if (condition.blocked <= condition.gone) return true;
        unlock_mutex(*condition.unblock);
    }
    post_semaphore(*condition.gate);
    return false;
}

void destroy_condition(Condition *&condition) {
    Locked guard(numbered_lock(lock_conditions));
    if (!close_condition(*condition)) return;
    Condition *doomed = condition;
    condition = nullptr;
    doomed->queue->count = 0; // nobody waits: what is missing was taken by waits that timed out
    destroy_semaphore(doomed->queue);
    destroy_semaphore(doomed->gate);
    unlock_mutex(*doomed->unblock);
    destroy_mutex(doomed->unblock);
    all_conditions.remove(*doomed);
    heap_release(doomed);
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

int cnd_init(cnd_t *cond) { return cond ? create_condition(*cond) : thrd_error; }
int cnd_signal(cnd_t *cond) { return release_waiters(cond, 1); }
int cnd_broadcast(cnd_t *cond) { return release_waiters(cond, UINT_MAX); }

int cnd_wait(cnd_t *cond, mtx_t *mtx) {
    if (!cond || !*cond || !mtx || !*mtx) return thrd_error;
    return wait_condition(**cond, **mtx, INFINITE);
}

int cnd_timedwait(cnd_t *cond, mtx_t *mtx, const timespec *ts) {
    if (!cond || !*cond || !mtx || !*mtx || !ts) return thrd_error;
    return wait_condition(**cond, **mtx, milliseconds_until(*ts));
}

void cnd_destroy(cnd_t *cond) {
    if (cond && *cond) destroy_condition(*cond);
}

} // extern "C"
