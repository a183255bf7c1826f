/* Threads: starting, joining, detaching, identities, results, exceptions; threads by their handles. */
#include "check.h"
#include "child.h"
#include "script.h"

#include <process.h>
#include <setjmp.h>
#include <signal.h>
#include <stdlib.h>
#include <threads.h>

__declspec(dllimport) unsigned long __stdcall GetCurrentThreadId(void);
__declspec(dllimport) int __stdcall GetExitCodeThread(void *, unsigned long *);
__declspec(dllimport) unsigned long __stdcall ResumeThread(void *);
__declspec(dllimport) void __stdcall Sleep(unsigned long);
int __thrd_create_omp(thrd_t *thr, thrd_start_t func, void *arg, size_t stack_size);

static thrd_t self;
static int give(void *result)
{
    self = thrd_current();
    return (int)result;
}
static int leave(void *result) { thrd_exit((int)result); }

static void test_results(void)
{
    static const int results[] = {0, 1, -1, 0x7FFFFFFF, 259};
    for (size_t i = 0; i < sizeof results / sizeof *results; ++i) {
        thrd_t thread;
        int result = 12345;
        CHECK_INT(thrd_create(&thread, i % 2 ? leave : give, (void *)results[i]), thrd_success);
        thrd_t copy = thread;
        CHECK_INT(thrd_join(thread, &result), thrd_success);
        CHECK_INT(result, results[i]);
        if (i % 2 == 0) CHECK(thrd_equal(self, copy));
        CHECK_INT(thrd_join(copy, &result), thrd_error); /* joined before */
        CHECK_INT(thrd_detach(copy), thrd_error);
    }
    thrd_t thread;
    CHECK_INT(thrd_create(&thread, give, NULL), thrd_success);
    CHECK_INT(thrd_join(thread, NULL), thrd_success);
    CHECK_INT(thrd_create(NULL, give, NULL), thrd_error);
    CHECK_INT(thrd_create(&thread, NULL, NULL), thrd_error);
}

static int join_itself(void *unused) { return thrd_join(thrd_current(), NULL); }

static void test_identities(void)
{
    thrd_t none = {0}, me = thrd_current(), thread, next;
    int result = -1;
    CHECK(thrd_equal(me, thrd_current()));
    CHECK(!thrd_equal(me, none));
    CHECK_INT(thrd_join(none, NULL), thrd_error);
    CHECK_INT(thrd_detach(none), thrd_error);
    CHECK_INT(thrd_join(me, NULL), thrd_error); /* not one of thrd_create's */
    CHECK_INT(thrd_detach(me), thrd_error);
    thrd_create(&thread, join_itself, NULL);
    CHECK_INT(thrd_join(thread, &result), thrd_success);
    CHECK_INT(result, thrd_error);
    thrd_create(&next, give, NULL); /* has the record of the one before */
    CHECK(!thrd_equal(thread, next));
    CHECK_INT(thrd_join(thread, NULL), thrd_error);
    CHECK_INT(thrd_join(next, NULL), thrd_success);
}

static volatile int go_on, ended;
static int wait_to_go(void *unused)
{
    while (!go_on) Sleep(1);
    ++ended;
    return 0;
}

static void test_detaching(void)
{
    thrd_t running, finished;
    go_on = ended = 0;
    thrd_create(&running, wait_to_go, NULL);
    CHECK_INT(thrd_detach(running), thrd_success);
    CHECK_INT(thrd_detach(running), thrd_error);
    CHECK_INT(thrd_join(running, NULL), thrd_error);
    go_on = 1;
    thrd_create(&finished, wait_to_go, NULL);
    while (ended < 2) Sleep(1);
    Sleep(30);
    CHECK_INT(thrd_detach(finished), thrd_success);
    CHECK_INT(thrd_detach(finished), thrd_error);
}

static size_t stack_reserve(void)
{
    struct { char *base, *allocation; unsigned long protect; size_t size; unsigned long rest[3]; } region;
    __declspec(dllimport) size_t __stdcall VirtualQuery(const void *, void *, size_t);
    char *start, here;
    VirtualQuery(&here, &region, sizeof region);
    start = region.allocation;
    return (size_t)(&here - start);
}
static int measure_stack(void *unused) { return (int)(stack_reserve() / 1024); }

static void test_stack_size(void)
{
    thrd_t thread;
    int standard = 0, large = 0;
    thrd_create(&thread, measure_stack, NULL);
    thrd_join(thread, &standard);
    CHECK_INT(__thrd_create_omp(&thread, measure_stack, NULL, 8 << 20), thrd_success);
    thrd_join(thread, &large);
    CHECK(standard >= 900 && standard < 4000);
    CHECK(large > 7500);
}

/* Thousands, one after the other and many at once; every one has an errno and a result of its own. */
static int own_errno(void *number)
{
    errno = (int)number;
    thrd_yield();
    return errno;
}

static void test_many(void)
{
    enum { at_once = 100 };
    static thrd_t threads[at_once];
    int wrong = 0;
    for (int round = 0; round < 20; ++round) {
        for (int i = 0; i < at_once; ++i)
            wrong += thrd_create(&threads[i], own_errno, (void *)(1000 * round + i)) != thrd_success;
        for (int i = 0; i < at_once; ++i) {
            int result;
            wrong += thrd_join(threads[i], &result) != thrd_success || result != 1000 * round + i;
        }
    }
    CHECK_INT(wrong, 0);
}

/* Until there is no room for a stack; all that were started can then still be joined. */
static void test_exhaustion(void)
{
    enum { most = 200 };
    static thrd_t threads[most];
    int count = 0, result = thrd_success, wrong = 0;
    go_on = ended = 0;
    for (; count < most; ++count) {
        result = __thrd_create_omp(&threads[count], wait_to_go, NULL, 64 << 20);
        if (result != thrd_success) break;
    }
    CHECK_INT(result, thrd_error);
    CHECK(count > 10);
    go_on = 1;
    for (int i = 0; i < count; ++i) wrong += thrd_join(threads[i], NULL) != thrd_success;
    CHECK_INT(wrong, 0);
    CHECK_INT(thrd_create(&threads[0], give, NULL), thrd_success);
    CHECK_INT(thrd_join(threads[0], NULL), thrd_success);
}

/* ---- by handles ---- */

static void begun(void *place) { *(int *)place = 1; }
static void begun_and_ended(void *place)
{
    *(int *)place = 2;
    _endthread();
}
static unsigned __stdcall begun_ex(void *id)
{
    *(unsigned *)id = GetCurrentThreadId();
    return 77;
}
static unsigned __stdcall ended_ex(void *unused)
{
    thrd_current();
    _endthreadex(78);
}
static unsigned __stdcall exited_ex(void *unused) { thrd_exit(79); }

static unsigned long status_of(uintptr_t handle)
{
    unsigned long status = 0;
    CHECK_INT(WaitForSingleObject((void *)handle, 10000), 0);
    CHECK(GetExitCodeThread((void *)handle, &status));
    CHECK(CloseHandle((void *)handle)); /* it was not closed before */
    return status;
}

static void test_begin_thread(void)
{
    volatile int place = 0;
    CHECK(_beginthread(begun, 0, (void *)&place) != (uintptr_t)-1);
    while (place != 1) Sleep(1);
    CHECK(_beginthread(begun_and_ended, 65536, (void *)&place) != (uintptr_t)-1);
    while (place != 2) Sleep(1);
    CHECK_ERRNO((intptr_t)_beginthread(NULL, 0, NULL), -1, EINVAL);

    unsigned id = 0, seen = 0;
    uintptr_t handle = _beginthreadex(NULL, 0, begun_ex, &seen, 4 /* suspended */, &id);
    CHECK(handle != 0 && id != 0);
    Sleep(20);
    CHECK_INT(seen, 0);
    ResumeThread((void *)handle);
    CHECK_INT(status_of(handle), 77);
    CHECK_INT(seen, id);
    CHECK_INT(status_of(_beginthreadex(NULL, 0, begun_ex, &seen, 0, NULL)), 77);
    CHECK_INT(status_of(_beginthreadex(NULL, 0, ended_ex, NULL, 0, NULL)), 78);
    CHECK_INT(status_of(_beginthreadex(NULL, 0, exited_ex, NULL, 0, NULL)), 79);
    CHECK_ERRNO(_beginthreadex(NULL, 0, NULL, NULL, 0, NULL), 0, EINVAL);
}

/* ---- sleeping ---- */

static long long timer_due;
static int __stdcall note_timer(void *timer, const long long *due, long period, void *r, void *a, int w)
{
    __declspec(dllimport) int __stdcall SetWaitableTimer(void *, const long long *, long, void *, void *, int);
    timer_due = *due;
    return SetWaitableTimer(timer, due, period, r, a, w);
}
static unsigned long slept;
static void __stdcall note_sleep(unsigned long milliseconds) { slept = milliseconds; }

static void test_sleeping(void)
{
    static const struct {
        time_t seconds;
        long nanoseconds;
        long long due; /* 1: refused */
    } cases[] = {
        {0, 0, 0}, {0, 49, 0}, {0, 50, -1}, {0, 149, -1}, {0, 20000000, -200000}, {0, 1000000000, 1},
        {0, -1, 1}, {1, 0, 1}, {0xFFFFFFFF, 0, 1},
    };
    script_import("SetWaitableTimer", note_timer);
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        struct timespec request = {cases[i].seconds, cases[i].nanoseconds}, rest = {7, 7};
        int refused = cases[i].due == 1;
        CHECK_ERRNO(i % 2 ? thrd_sleep(&request, &rest) : _nanosleep(&request, &rest),
                    refused ? -1 : 0, refused ? EINVAL : 0);
        if (!refused) CHECK_INT(timer_due, cases[i].due);
        CHECK_INT(rest.tv_sec, refused ? 7 : 0);
        CHECK_INT(rest.tv_nsec, refused ? 7 : 0);
    }
    CHECK_ERRNO(_nanosleep(NULL, NULL), -1, EINVAL);
    clock_t before = clock();
    CHECK_INT(_nanosleep(&(struct timespec){0, 50000000}, NULL), 0);
    CHECK(clock() - before >= 45);
    script_restore();
    script_import("Sleep", note_sleep);
    CHECK_INT(_sleep(3), 0);
    CHECK_INT(slept, 3000);
    CHECK_INT(_sleep(0xFFFFFFFF), 0);
    CHECK_INT(slept, 65535000);
    script_restore();
}

/* ---- exceptions and other ends, in children ---- */

static int __stdcall refuse_slot(unsigned long slot, void *value) { return 0; }

static jmp_buf back;
static void jump_back(int number) { longjmp(back, number); }
__attribute__((noinline)) static int read_at(volatile int *at) { return *at; }

static int fault(void *how)
{
    if (how) {
        signal(SIGSEGV, jump_back);
        if (setjmp(back)) return 31;
    }
    return read_at((volatile int *)16);
}
static void fault_begun(void *unused) { read_at((volatile int *)16); }
static void end_process(void *status)
{
    Sleep(50);
    exit((int)status);
}
static unsigned __stdcall fault_ex(void *unused) { return (unsigned)read_at((volatile int *)16); }

static int child_main(const char *how)
{
    thrd_t thread;
    int result = 0;
    signal(SIGSEGV, jump_back); /* this thread's, not theirs */
    switch (*how) {
    case 'c': thrd_create(&thread, fault, NULL); break;
    case 'b': _beginthread(fault_begun, 0, NULL); break;
    case 'x': _beginthreadex(NULL, 0, fault_ex, NULL, 0, NULL); break;
    case 'h':
        thrd_create(&thread, fault, "handle");
        thrd_join(thread, &result);
        return result;
    case 'm': /* the first thread ends, the other goes on and ends the process */
        _beginthread(end_process, 0, (void *)32);
        thrd_exit(0);
    }
    Sleep(10000);
    return 1;
}

static void test_children(void)
{
    static const struct {
        const char *how;
        int status;
        const char *error;
    } cases[] = {
        {"c", 255, "CRT: unhandled exception in thread -- terminating\r\n"},
        {"b", 255, "CRT: unhandled exception in thread -- terminating\r\n"},
        {"x", 255, "CRT: unhandled exception in thread -- terminating\r\n"},
        {"slot c", 255, "CRT: corrupt per-thread data -- terminating\n"},
        {"slot b", 255, "CRT: corrupt per-thread data -- terminating\n"},
        {"slot x", 255, "CRT: corrupt per-thread data -- terminating\n"},
        {"h", 31, ""},
        {"m", 32, ""},
    };
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        check_label = cases[i].how;
        struct child child = child_run(cases[i].how, NULL);
        CHECK_INT(child.status, cases[i].status);
        CHECK(strstr(child.error, cases[i].error) != NULL);
    }
    check_label = "";
}

int main(int argc, char **argv)
{
    if (argc > 2) script_import("TlsSetValue", refuse_slot); /* "slot": the new thread gets no record */
    if (argc > 1) return child_main(argv[argc - 1]);
    test_results();
    test_identities();
    test_detaching();
    test_stack_size();
    test_many();
    test_exhaustion();
    test_begin_thread();
    test_sleeping();
    test_children();
    return check_done();
}
