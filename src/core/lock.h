// Recursive locks and the table of numbered ones.
//
// While the process has had only one thread, taking a lock is a few plain stores. The loader tells
// of every further thread before it runs its first instruction of user code, and the library then
// switches to interlocked operations for good. The switch must not fall into the middle of a plain
// operation, so the two sides use an asymmetric version of Dekker's protocol: the only thread
// announces the operation in `plain_section` and then looks at `many_threads`; the arriving thread
// sets `many_threads`, forces the first one through a memory barrier, and waits until
// `plain_section` is clear. One of the two always sees the other, and the first thread needs no
// fence of its own.
#pragma once

#include "platform/kernel32.h"

namespace vexrt {

inline DWORD current_thread_id() {
    return *reinterpret_cast<volatile DWORD __attribute__((address_space(257))) *>(0x24);
}

// A recursive lock. All zero is a free lock, so static ones need no set-up.
//
// `state` is 0 when free, 1 when held, 2 when held and somebody may be waiting on `event`. A waiter
// sets 2 before it sleeps and takes the lock with 2; a release that finds 2 signals the event. The
// event keeps a signal that comes before the sleep, and a stale one costs one more look.
struct Lock {
    volatile DWORD state;
    volatile DWORD owner; // thread id, 0 when free
    DWORD depth;          // how often the owner holds it
    HANDLE volatile event;

    void enter();
    bool try_enter(); // false when another thread holds it
    void leave();
    void destroy(); // closes the event; the lock is free and zero again
    // Whether another thread has it just now.
    bool held_elsewhere() const { return state && owner != current_thread_id(); }

private:
    bool enter_plainly(DWORD me); // false when there are several threads
    void enter_shared(DWORD me);
    bool try_enter_shared(DWORD me);
    void enter_contended();
    void leave_shared();
    void take(DWORD me) {
        owner = me;
        depth = 1;
    }
};
static_assert(sizeof(Lock) == 16);

// The threading mode; see the top of this file. `owners_gone` is set when the process is ending and
// every other thread has been stopped: a lock that one of them held is then simply taken over.
struct ThreadingMode {
    volatile bool many_threads;
    volatile bool plain_section;
    bool owners_gone;
    DWORD first_thread; // the one that attached the library
};
extern ThreadingMode threading_mode;

inline void compiler_barrier() { __asm__ volatile("" ::: "memory"); }

// Tries to begin an operation that no other thread can disturb because there is none.
inline bool begin_plain_section() {
    if (threading_mode.many_threads) return false;
    threading_mode.plain_section = true;
    compiler_barrier();
    if (__builtin_expect(threading_mode.many_threads, false)) {
        threading_mode.plain_section = false;
        return false;
    }
    return true;
}

inline void end_plain_section() {
    compiler_barrier();
    threading_mode.plain_section = false;
}

inline bool Lock::enter_plainly(DWORD me) {
    if (__builtin_expect(!begin_plain_section(), false)) return false;
    state = 1;
    owner = me;
    ++depth;
    end_plain_section();
    return true;
}

inline void Lock::enter() {
    DWORD me = current_thread_id();
    if (!enter_plainly(me)) enter_shared(me);
}

inline bool Lock::try_enter() {
    DWORD me = current_thread_id();
    return enter_plainly(me) || try_enter_shared(me);
}

inline void Lock::leave() {
    if (__builtin_expect(begin_plain_section(), true)) {
        if (--depth == 0) {
            owner = 0;
            state = 0;
        }
        end_plain_section();
    } else {
        leave_shared();
    }
}

// Called on the arrival of a thread (and at attach when the process already has several): returns
// once no plain operation is under way.
void note_second_thread();
// Called when the process is ending and this thread is the only one left.
void note_other_threads_gone();

// Holds a lock for a scope.
class Locked {
public:
    explicit Locked(Lock &lock) : lock_(lock) { lock_.enter(); }
    ~Locked() { lock_.leave(); }
    Locked(const Locked &) = delete;
    Locked &operator=(const Locked &) = delete;

private:
    Lock &lock_;
};

// The numbered locks. Order of taking: a lower rank first where two are held; lock 3 is taken last
// and never with another one inside.
enum LockNumber : unsigned {
    lock_heap = 0,
    lock_unused = 1,
    lock_exit = 2,
    lock_creation = 3,
    lock_descriptors = 4,
    lock_locales = 5,
    lock_streams = 6,
    lock_environment = 7,
    lock_pipes = 8,
    lock_console = 9,
    lock_conditions = 10,
    lock_thread_records = 11,
    lock_first_stream = 12,
    lock_count = 268,
    static_lock_count = 4,
    stream_lock_count = lock_count - lock_first_stream
};

extern Lock static_locks[static_lock_count];
extern Lock *numbered_locks[lock_count];

// Makes lock N on its first use; null when there is no memory.
Lock *create_numbered_lock(unsigned number);
[[noreturn]] void fail_without_lock();

inline Lock *find_numbered_lock(unsigned number) {
    Lock *lock = numbered_locks[number];
    return __builtin_expect(lock != nullptr, true) ? lock : create_numbered_lock(number);
}

// The same, but without memory the process ends with code -4.
inline Lock &numbered_lock(unsigned number) {
    Lock *lock = find_numbered_lock(number);
    if (__builtin_expect(!lock, false)) fail_without_lock();
    return *lock;
}

// The lock of stream table slot `index`; an index beyond the table ends the process with code -6.
Lock &stream_lock(unsigned index);

void create_static_locks();
void destroy_locks();

} // namespace vexrt
