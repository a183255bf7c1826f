/* Thread-specific storage with its destructors, thread-local variables, call_once. */
#include "check.h"

#include <process.h>
#include <setjmp.h>
#include <threads.h>

__declspec(dllimport) void __stdcall Sleep(unsigned long);
__declspec(dllimport) unsigned long __stdcall WaitForSingleObject(void *, unsigned long);
__declspec(dllimport) void *__stdcall CreateThread(void *, size_t, unsigned long(__stdcall *)(void *),
                                                   void *, unsigned long, unsigned long *);

static tss_t key, other_key;
static volatile int calls, other_calls, again;
static void *volatile last_value;

static void destroy(void *value)
{
    ++calls;
    last_value = value;
    if (again) tss_set(key, value); /* never ends by itself */
}
static void destroy_other(void *value)
{
    ++other_calls;
    if (value == (void *)5) tss_set(key, (void *)6); /* found by the next pass */
}

/* Three ways for a thread to start and end; each stores a value. */
static int store(void *value) { return tss_set(key, value); }
static unsigned __stdcall store_ex(void *value) { return (unsigned)tss_set(key, value); }
static unsigned long __stdcall store_raw(void *value) { return (unsigned long)tss_set(key, value); }

static void run(int way, void *value)
{
    thrd_t thread;
    int result = -1;
    void *handle = NULL;
    switch (way) {
    case 0:
        thrd_create(&thread, store, value);
        thrd_join(thread, &result);
        CHECK_INT(result, thrd_success);
        return;
    case 1: handle = (void *)_beginthreadex(NULL, 0, store_ex, value, 0, NULL); break;
    default: handle = CreateThread(NULL, 0, store_raw, value, 0, NULL);
    }
    CHECK_INT(WaitForSingleObject(handle, 10000), 0);
}

static void test_destructors(void)
{
    CHECK_INT(tss_create(&key, destroy), thrd_success);
    CHECK(tss_get(key) == NULL);
    for (int way = 0; way < 3; ++way) {
        calls = again = 0;
        run(way, (void *)(100 + way));
        CHECK_INT(calls, 1);
        CHECK(last_value == (void *)(100 + way));
        run(way, NULL); /* no value, no call */
        CHECK_INT(calls, 1);
        calls = 0;
        again = 1;
        run(way, (void *)1);
        CHECK_INT(calls, TSS_DTOR_ITERATIONS);
    }
    again = 0;
    CHECK_INT(tss_set(key, (void *)7), thrd_success);
    CHECK(tss_get(key) == (void *)7);
    calls = 0;
    tss_delete(key); /* calls nothing, though this thread has a value */
    CHECK_INT(calls, 0);
}

static int store_two(void *value)
{
    tss_set(other_key, value);
    tss_set(other_key, NULL);
    tss_set(other_key, value);
    return 0;
}

static void test_two_keys(void)
{
    thrd_t thread;
    calls = other_calls = 0;
    tss_create(&key, destroy);
    tss_create(&other_key, destroy_other);
    thrd_create(&thread, store_two, (void *)5);
    thrd_join(thread, NULL);
    CHECK_INT(other_calls, 1);
    CHECK_INT(calls, 1);
    CHECK(last_value == (void *)6);
    tss_delete(key);
    tss_delete(other_key);
}

/* A destructor that deletes keys, its own among them, while the run is at them. */
static tss_t doomed[4];
static void delete_all(void *value)
{
    ++calls;
    for (int i = 0; i < 4; ++i) {
        tss_t one = doomed[i];
        doomed[i] = NULL;
        tss_delete(one);
    }
}
static int store_doomed(void *unused)
{
    for (int i = 0; i < 4; ++i) tss_set(doomed[i], (void *)1);
    return 0;
}

static void test_deletion_by_destructor(void)
{
    thrd_t thread;
    int result = -1;
    calls = 0;
    for (int i = 0; i < 4; ++i) tss_create(&doomed[i], delete_all);
    thrd_create(&thread, store_doomed, NULL);
    CHECK_INT(thrd_join(thread, &result), thrd_success);
    CHECK_INT(calls, 1);
}

static void test_null(void)
{
    tss_t plain;
    CHECK_INT(tss_create(NULL, NULL), thrd_error);
    CHECK(tss_get(NULL) == NULL);
    CHECK_INT(tss_set(NULL, (void *)1), thrd_success);
    tss_delete(NULL);
    CHECK_INT(tss_create(&plain, NULL), thrd_success);
    CHECK_INT(tss_set(plain, (void *)3), thrd_success);
    CHECK(tss_get(plain) == (void *)3);
    tss_delete(plain);
}

/* More keys than the thread block has slots of its own; all of them, then. */
static void test_many_keys(void)
{
    static tss_t keys[2000];
    int count = 0, wrong = 0;
    while (count < 2000 && tss_create(&keys[count], count % 2 ? destroy : NULL) == thrd_success) {
        wrong += tss_get(keys[count]) != NULL;
        wrong += tss_set(keys[count], (void *)(count + 1)) != thrd_success;
        ++count;
    }
    CHECK(count > 900 && count < 1100);
    CHECK_INT(tss_create(&keys[count], NULL), thrd_nomem);
    for (int i = 0; i < count; ++i) wrong += tss_get(keys[i]) != (void *)(i + 1);
    for (int i = 0; i < count; ++i) tss_delete(keys[i]);
    CHECK_INT(tss_create(&keys[0], destroy), thrd_success);
    wrong += tss_get(keys[0]) != NULL; /* nothing is left in a slot that is used again */
    CHECK_INT(wrong, 0);
    tss_delete(keys[0]);
}

/* ---- thread-local variables ---- */

static thread_local int local = 40;
static thread_local struct { char bytes[300]; long long number; } big = {"big", 7};
static int count_up(void *value)
{
    local += (int)value;
    big.number += local;
    return local == 40 + (int)value && big.number == 47 + (int)value && strcmp(big.bytes, "big") == 0;
}
static unsigned __stdcall count_up_ex(void *value) { return (unsigned)count_up(value); }

static void test_thread_local(void)
{
    thrd_t threads[20];
    int right = 0, result;
    for (int i = 0; i < 20; ++i) thrd_create(&threads[i], count_up, (void *)i);
    for (int i = 0; i < 20; ++i) {
        thrd_join(threads[i], &result);
        right += result;
    }
    CHECK_INT(right, 20);
    unsigned long status = 0;
    __declspec(dllimport) int __stdcall GetExitCodeThread(void *, unsigned long *);
    void *handle = (void *)_beginthreadex(NULL, 0, count_up_ex, (void *)9, 0, NULL);
    WaitForSingleObject(handle, 10000);
    GetExitCodeThread(handle, &status);
    CHECK_INT(status, 1);
    CHECK_INT(local, 40);
}

/* ---- call_once ---- */

static once_flag flag = ONCE_FLAG_INIT;
static volatile int done, seen_undone;
static void initialise(void)
{
    Sleep(30);
    ++done;
}
static int call(void *unused)
{
    call_once(&flag, initialise);
    if (done != 1) ++seen_undone;
    return 0;
}

static once_flag failing = ONCE_FLAG_INIT;
static volatile int attempts;
__declspec(dllimport) void __stdcall RaiseException(unsigned, unsigned, unsigned, const unsigned *);
static void fail_twice(void)
{
    Sleep(5);
    if (++attempts < 3) RaiseException(0xE0000001, 0, 0, NULL);
}
static int call_failing(void *unused)
{
    __try {
        call_once(&failing, fail_twice);
    } __except (1) {
        return 1;
    }
    return 0;
}

static once_flag jumping = ONCE_FLAG_INIT;
static jmp_buf place;
static void jump_out(void)
{
    if (++attempts == 1) longjmp(place, 1);
}

static void test_once(void)
{
    enum { count = 10 };
    thrd_t threads[count];
    for (int i = 0; i < count; ++i) thrd_create(&threads[i], call, NULL);
    for (int i = 0; i < count; ++i) thrd_join(threads[i], NULL);
    CHECK_INT(done, 1);
    CHECK_INT(seen_undone, 0);
    call_once(&flag, initialise);
    CHECK_INT(done, 1);
    int failures = 0, result;
    for (int i = 0; i < count; ++i) thrd_create(&threads[i], call_failing, NULL);
    for (int i = 0; i < count; ++i) {
        thrd_join(threads[i], &result);
        failures += result;
    }
    CHECK_INT(attempts, 3);
    CHECK_INT(failures, 2);
    attempts = 0;
    if (setjmp(place) == 0) call_once(&jumping, jump_out);
    call_once(&jumping, jump_out);
    call_once(&jumping, jump_out);
    CHECK_INT(attempts, 2);
}

int main(void)
{
    test_destructors();
    test_two_keys();
    test_deletion_by_destructor();
    test_null();
    test_many_keys();
    test_thread_local();
    test_once();
    return check_done();
}
