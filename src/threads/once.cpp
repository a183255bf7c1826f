// call_once: callers queue up. Each has a node on its own stack; the flag has the last one. Whoever
// is first has the turn, and passes it on when it is done.
//
// A node may be gone as soon as its owner has gone on. Two threads therefore meet at a slot, which
// holds nothing, the event that the waiting one has made, or `passed`; the other one touches the
// slot once, and that last.

#include "core/last_error.h"

#include <threads.h>

namespace vexrt {

namespace {

using Slot = HANDLE volatile;
const HANDLE passed = reinterpret_cast<HANDLE>(-1);

struct Caller {
    Caller *volatile next;
    Slot turn;      // passed when it is this one's turn
    Slot successor; // passed when `next` is set
};

void pass(Slot &slot) {
    HANDLE event = __atomic_exchange_n(&slot, passed, __ATOMIC_SEQ_CST);
    if (event) SetEvent(event);
}

// Without an event, waiting degrades to polling; it still ends.
void wait_until_passed(Slot &slot) {
    if (slot == passed) return;
    LastErrorKept kept;
    HANDLE event = CreateEventW(nullptr, false, false, nullptr);
    HANDLE expected = nullptr;
    if (!event) {
        while (slot != passed) Sleep(1);
    } else {
        if (__atomic_compare_exchange_n(&slot, &expected, event, false, __ATOMIC_SEQ_CST,
                                        __ATOMIC_SEQ_CST))
            WaitForSingleObject(event, INFINITE);
        CloseHandle(event);
    }
}

void enter_queue(once_flag &flag, Caller &me) {
    auto *before = static_cast<Caller *>(__atomic_exchange_n(&flag.__queue, &me, __ATOMIC_SEQ_CST));
    if (!before) return;
    before->next = &me;
    pass(before->successor);
    wait_until_passed(me.turn);
}

void leave_queue(once_flag &flag, Caller &me) {
    void *expected = &me;
    if (__atomic_compare_exchange_n(&flag.__queue, &expected, nullptr, false, __ATOMIC_SEQ_CST,
                                    __ATOMIC_SEQ_CST))
        return;
    wait_until_passed(me.successor);
    pass(me.next->turn);
}

[[gnu::noinline]] void call_in_turn(once_flag &flag, void (*func)()) {
    Caller me = {};
    enter_queue(flag, me);
    __try {
        if (!flag.__done) {
            func();
            __atomic_store_n(&flag.__done, 1, __ATOMIC_SEQ_CST);
        }
    } __finally {
        leave_queue(flag, me);
    }
}

} // namespace

} // namespace vexrt

extern "C" void call_once(once_flag *flag, void (*func)(void)) {
    if (!__atomic_load_n(&flag->__done, __ATOMIC_ACQUIRE)) vexrt::call_in_turn(*flag, func);
}
