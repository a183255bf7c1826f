#include "threads/semaphore.h"

#include "core/last_error.h"
#include "heap/heap.h"

#include <limits.h>

namespace vexrt {

int create_semaphore(Semaphore *&semaphore, int count) {
    semaphore = nullptr;
    auto *made = static_cast<Semaphore *>(heap_allocate(sizeof(Semaphore)));
    if (!made) return thrd_nomem;
    int result = create_mutex(made->guard, mtx_plain);
    if (result == thrd_success) {
        LastErrorKept kept;
        made->count = count;
        made->tokens = CreateSemaphoreW(nullptr, 0, INT_MAX, nullptr);
        if (made->tokens) {
            semaphore = made;
            return thrd_success;
        }
        destroy_mutex(made->guard);
        result = thrd_nomem;
    }
    heap_release(made);
    return result;
}

int wait_semaphore(Semaphore &semaphore, DWORD milliseconds) {
    int count;
    {
        MutexLocked guard(*semaphore.guard);
        count = --semaphore.count;
    }
    return count >= 0 ? thrd_success : wait_for(semaphore.tokens, milliseconds);
}

int post_semaphore(Semaphore &semaphore, unsigned n) {
    MutexLocked guard(*semaphore.guard);
    if (semaphore.count > 0 && n > static_cast<unsigned>(INT_MAX - semaphore.count))
        return thrd_error;
    unsigned waiters = semaphore.count < 0 ? 0U - static_cast<unsigned>(semaphore.count) : 0;
    semaphore.count += static_cast<int>(n);
    unsigned released = n < waiters ? n : waiters;
    if (released && !ReleaseSemaphore(semaphore.tokens, static_cast<LONG>(released), nullptr))
        return thrd_error;
    return thrd_success;
}

int destroy_semaphore(Semaphore *&semaphore) {
    {
        MutexLocked guard(*semaphore->guard);
        if (semaphore->count < 0) return thrd_busy;
        CloseHandle(semaphore->tokens);
        semaphore->count = INT_MAX; // nobody may post any more
    }
    while (destroy_mutex(semaphore->guard) == thrd_busy) Sleep(0);
    heap_release(semaphore);
    semaphore = nullptr;
    return thrd_success;
}

} // namespace vexrt
