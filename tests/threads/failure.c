/* The system fails at every call in turn: the result is right, and all that was had is given back. */
#include "check.h"
#include "script.h"

#include <malloc.h>
#include <process.h>
#include <threads.h>

typedef unsigned long DWORD;
__declspec(dllimport) void __stdcall SetLastError(DWORD);
__declspec(dllimport) DWORD __stdcall GetLastError(void);
__declspec(dllimport) DWORD __stdcall WaitForSingleObject(void *, DWORD);

static int handles, blocks, slots;

static void *(__stdcall *real_event)(void *, int, int, const void *);
static void *(__stdcall *real_semaphore)(void *, long, long, const void *);
static void *(__stdcall *real_thread)(void *, size_t, void *, void *, DWORD, DWORD *);
static DWORD (__stdcall *real_resume)(void *);
static void *(__stdcall *real_timer)(void *, int, const char *);
static int(__stdcall *real_set_timer)(void *, const long long *, long, void *, void *, int);
static DWORD (__stdcall *real_wait)(void *, DWORD);
static int(__stdcall *real_close)(void *);
static void *(__stdcall *real_alloc)(void *, DWORD, size_t);
static int(__stdcall *real_free)(void *, DWORD, void *);
static DWORD (__stdcall *real_slot)(void);
static int(__stdcall *real_free_slot)(DWORD);

static int failing(void)
{
    if (!script_fail_now()) return 0;
    SetLastError(1816); /* ENOMEM */
    return 1;
}
static void *keep(void *handle)
{
    handles += handle != NULL;
    return handle;
}
static void *__stdcall event(void *s, int manual, int set, const void *name)
{
    return failing() ? NULL : keep(real_event(s, manual, set, name));
}
static void *__stdcall semaphore(void *s, long count, long most, const void *name)
{
    return failing() ? NULL : keep(real_semaphore(s, count, most, name));
}
static void *__stdcall thread(void *s, size_t stack, void *start, void *argument, DWORD flags, DWORD *id)
{
    return failing() ? NULL : keep(real_thread(s, stack, start, argument, flags, id));
}
static DWORD __stdcall resume(void *handle) { return failing() ? (DWORD)-1 : real_resume(handle); }
static void *__stdcall timer(void *s, int manual, const char *name)
{
    return failing() ? NULL : keep(real_timer(s, manual, name));
}
static int __stdcall set_timer(void *t, const long long *due, long period, void *r, void *a, int w)
{
    return failing() ? 0 : real_set_timer(t, due, period, r, a, w);
}
static int timer_waits;
static DWORD __stdcall wait(void *object, DWORD milliseconds)
{
    return timer_waits && failing() ? (DWORD)-1 : real_wait(object, milliseconds);
}
static int __stdcall close(void *handle)
{
    --handles;
    return real_close(handle);
}
static void *__stdcall alloc(void *heap, DWORD flags, size_t size)
{
    if (failing()) return NULL;
    ++blocks;
    return real_alloc(heap, flags, size);
}
static int __stdcall release(void *heap, DWORD flags, void *block)
{
    blocks -= block != NULL;
    return real_free(heap, flags, block);
}
static DWORD __stdcall slot(void)
{
    if (failing()) return 0xFFFFFFFF;
    ++slots;
    return real_slot();
}
static int __stdcall free_slot(DWORD number)
{
    --slots;
    return real_free_slot(number);
}

static void script_all(void)
{
    real_event = script_import("CreateEventW", event);
    real_semaphore = script_import("CreateSemaphoreW", semaphore);
    real_thread = script_import("CreateThread", thread);
    real_resume = script_import("ResumeThread", resume);
    real_timer = script_import("CreateWaitableTimerA", timer);
    real_set_timer = script_import("SetWaitableTimer", set_timer);
    real_wait = script_import("WaitForSingleObject", wait);
    real_close = script_import("CloseHandle", close);
    real_alloc = script_import("HeapAlloc", alloc);
    real_free = script_import("HeapFree", release);
    real_slot = script_import("TlsAlloc", slot);
    real_free_slot = script_import("TlsFree", free_slot);
}

/* ---- what is tried; each undoes what it has done ---- */

static int try_mutex(void)
{
    mtx_t mutex = (mtx_t)1;
    int result = mtx_init(&mutex, mtx_timed | mtx_recursive);
    CHECK((mutex != NULL) == (result == thrd_success));
    mtx_destroy(&mutex);
    return result;
}

static int try_condition(void)
{
    cnd_t condition = (cnd_t)1;
    int result = cnd_init(&condition);
    CHECK((condition != NULL) == (result == thrd_success));
    cnd_destroy(&condition);
    return result;
}

static void destroy(void *value) {}

static int try_key(void)
{
    tss_t key = (tss_t)1;
    int result = tss_create(&key, destroy);
    CHECK((key != NULL) == (result == thrd_success));
    if (result == thrd_success) {
        result = tss_set(key, (void *)1);
        CHECK((tss_get(key) != NULL) == (result == thrd_success));
    }
    tss_delete(key);
    return result;
}

static int nothing(void *unused) { return 5; }

static int try_thread(void)
{
    thrd_t unchanged = {&handles, 77}, started = unchanged;
    int result = thrd_create(&started, nothing, NULL), value = 0;
    if (result != thrd_success) {
        CHECK(thrd_equal(started, unchanged));
        return result;
    }
    CHECK_INT(thrd_join(started, &value), thrd_success);
    CHECK_INT(value, 5);
    return result;
}

static void begin_nothing(void *event) { }
static unsigned __stdcall begin_nothing_ex(void *unused) { return 5; }

/* These set errno, but not for their own memory. */
static int try_begin_ex(void)
{
    errno = 0;
    uintptr_t handle = _beginthreadex(NULL, 0, begin_nothing_ex, NULL, 0, NULL);
    if (!handle) return errno == ENOMEM || (errno == 0 && script_calls <= 2) ? thrd_nomem : -1;
    WaitForSingleObject((void *)handle, 10000);
    close((void *)handle);
    return thrd_success;
}

static int try_sleep(void)
{
    timer_waits = 1;
    errno = 0;
    int result = _nanosleep(&(struct timespec){0, 1000}, NULL);
    timer_waits = 0;
    return result == 0 ? thrd_success : result == -1 && errno == ENOMEM ? thrd_nomem : -2;
}

static void test(const char *name, int (*attempt)(void), int least_failures, int also)
{
    check_label = name;
    script_fail_from(0, 0);
    CHECK_INT(attempt(), thrd_success); /* what is kept for the next time is there now */
    int failures = 0, result;
    for (;; ++failures) {
        int handles_before = handles, blocks_before = blocks, slots_before = slots;
        script_fail_from(failures + 1, 0);
        result = attempt();
        script_fail_from(0, 0);
        CHECK_INT(handles, handles_before);
        CHECK_INT(blocks, blocks_before);
        CHECK_INT(slots, slots_before);
        if (result == thrd_success) break;
        CHECK(result == thrd_nomem || result == also);
    }
    CHECK(failures >= least_failures && failures < 30);
    check_label = "";
}

/* A thread whose own creation fails leaves the caller's state alone. */
static void test_begin_failure(void)
{
    script_fail_from(3, 0); /* the record, its locale name, the thread */
    errno = 0;
    CHECK_INT((intptr_t)_beginthread(begin_nothing, 0, NULL), -1);
    CHECK_INT(errno, ENOMEM);
    script_fail_from(0, 0);
}

/* Waits that time out leave nothing behind when the condition variable is destroyed. */
static void test_time_outs(void)
{
    int handles_before = handles, blocks_before = blocks;
    mtx_t mutex;
    cnd_t condition;
    CHECK_INT(mtx_init(&mutex, mtx_plain), thrd_success);
    CHECK_INT(cnd_init(&condition), thrd_success);
    for (int i = 0; i < 3; ++i) {
        mtx_lock(&mutex);
        CHECK_INT(cnd_timedwait(&condition, &mutex, &(struct timespec){0, 0}), thrd_timedout);
    }
    CHECK(handles > handles_before);
    cnd_destroy(&condition);
    mtx_destroy(&mutex);
    CHECK_INT(handles, handles_before);
    CHECK_INT(blocks, blocks_before);
}

int main(void)
{
    __bheap_threshold = 0; /* all blocks come from the system */
    script_all();
    thrd_current();
    test("mutex", try_mutex, 2, thrd_nomem);
    test("condition", try_condition, 8, thrd_nomem);
    test("key", try_key, 5, thrd_nomem);
    test("thread", try_thread, 5, thrd_error);
    test("_beginthreadex", try_begin_ex, 3, thrd_nomem);
    test("sleep", try_sleep, 3, thrd_nomem);
    test_begin_failure();
    test_time_outs();
    CHECK_INT(slots, 0);
    script_restore();
    return check_done();
}
