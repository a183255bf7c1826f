/*
 * Threads under load: nothing is lost, doubled or entered twice. Rounds of several kinds run in turn for
 * VEXRT_SOAK seconds (2 of them unless the environment says otherwise). A round that stands still for a
 * minute ends the test.
 */
#include "check.h"

#include <process.h>
#include <stdatomic.h>
#include <stdlib.h>
#include <threads.h>

typedef unsigned long DWORD;
__declspec(dllimport) DWORD __stdcall GetEnvironmentVariableA(const char *, char *, DWORD);
__declspec(dllimport) DWORD __stdcall GetTickCount(void);
__declspec(dllimport) void __stdcall Sleep(DWORD);
__declspec(dllimport) DWORD __stdcall WaitForSingleObject(void *, DWORD);
__declspec(dllimport) int __stdcall CloseHandle(void *);

enum { thread_count = 8 };

static atomic_uint progress;
static const char *volatile what;

static int watch(void *unused)
{
    for (;;) {
        unsigned before = progress;
        for (int i = 0; i < 60 && before == progress; ++i) Sleep(1000);
        if (before != progress) continue;
        printf("%s: no progress for a minute\n0 passed, 1 failed\n", what);
        fflush(stdout);
        _Exit(1);
    }
}

static unsigned random_below(unsigned *state, unsigned limit)
{
    *state = *state * 1664525 + 1013904223;
    return (*state >> 8) % limit;
}

static void run_all(thrd_start_t work)
{
    thrd_t threads[thread_count];
    for (int i = 0; i < thread_count; ++i)
        CHECK_INT(thrd_create(&threads[i], work, (void *)(i + 1)), thrd_success);
    for (int i = 0; i < thread_count; ++i) CHECK_INT(thrd_join(threads[i], NULL), thrd_success);
}

static struct timespec in_a_moment(unsigned milliseconds)
{
    struct timespec ts;
    timespec_get(&ts, TIME_UTC);
    ts.tv_nsec = 1000000L * (long)milliseconds;
    return ts;
}

/* ---- mutexes: one thread inside, counts exact ---- */

static mtx_t mutexes[4];
static volatile unsigned inside[4], counts[4];
static atomic_uint due_counts[4];

static int enter(void *number)
{
    unsigned state = (unsigned)number * 77 + progress;
    for (int i = 0; i < 3000; ++i) {
        unsigned k = random_below(&state, 4), depth = 1;
        struct timespec ts = in_a_moment(random_below(&state, 3));
        int result = k % 2 && i % 3 == 0 ? mtx_timedlock(&mutexes[k], &ts)
                     : i % 3 == 1        ? mtx_trylock(&mutexes[k])
                                         : mtx_lock(&mutexes[k]);
        if (result != thrd_success) continue;
        while (k >= 2 && depth < 3 && random_below(&state, 2)) depth += mtx_lock(&mutexes[k]) == thrd_success;
        if (inside[k]++ != 0) counts[k] = 0x80000000; /* two of them */
        ++counts[k];
        if (random_below(&state, 200) == 0) thrd_yield();
        --inside[k];
        atomic_fetch_add(&due_counts[k], 1);
        while (depth--) mtx_unlock(&mutexes[k]);
        ++progress;
    }
    return 0;
}

static void soak_mutexes(void)
{
    static const int types[] = {mtx_plain, mtx_timed, mtx_plain | mtx_recursive, mtx_timed | mtx_recursive};
    for (int i = 0; i < 4; ++i) {
        mtx_init(&mutexes[i], types[i]);
        counts[i] = 0;
        due_counts[i] = 0;
    }
    run_all(enter);
    for (int i = 0; i < 4; ++i) {
        CHECK(counts[i] > 0);
        CHECK_INT(counts[i], due_counts[i]);
        mtx_destroy(&mutexes[i]);
        CHECK(mutexes[i] == NULL);
    }
}

/* ---- a bounded queue: every item arrives once ---- */

enum { room = 4, items = 2000 };
static mtx_t queue_mutex;
static cnd_t not_empty, not_full;
static int queue[room], queued, first, producers_left;
static unsigned char arrived[thread_count / 2 * items];

/* Waits now and then with a time limit; after a time-out the mutex is taken again. */
static void wait_a_while(cnd_t *condition, unsigned *state)
{
    if (random_below(state, 3)) {
        cnd_wait(condition, &queue_mutex);
    } else {
        struct timespec ts = in_a_moment(random_below(state, 3));
        if (cnd_timedwait(condition, &queue_mutex, &ts) != thrd_success) mtx_lock(&queue_mutex);
    }
}

static void produce(unsigned number, unsigned *state)
{
    for (int i = 0; i < items; ++i) {
        mtx_lock(&queue_mutex);
        while (queued == room) wait_a_while(&not_full, state);
        queue[(first + queued++) % room] = (int)(number * items) + i;
        mtx_unlock(&queue_mutex);
        cnd_signal(&not_empty);
    }
    mtx_lock(&queue_mutex);
    --producers_left;
    mtx_unlock(&queue_mutex);
    cnd_broadcast(&not_empty);
}

static void consume(unsigned *state)
{
    for (;;) {
        mtx_lock(&queue_mutex);
        while (queued == 0 && producers_left) wait_a_while(&not_empty, state);
        if (queued == 0) break;
        ++arrived[queue[first]];
        first = (first + 1) % room;
        --queued;
        mtx_unlock(&queue_mutex);
        if (random_below(state, 2)) cnd_signal(&not_full);
        else cnd_broadcast(&not_full);
        ++progress;
    }
    mtx_unlock(&queue_mutex);
}

static int produce_or_consume(void *number)
{
    unsigned n = (unsigned)number - 1, state = n * 99 + progress;
    if (n % 2) consume(&state);
    else produce(n / 2, &state);
    return 0;
}

static void soak_queue(void)
{
    memset(arrived, 0, sizeof arrived);
    producers_left = thread_count / 2;
    queued = 0;
    mtx_init(&queue_mutex, mtx_plain);
    cnd_init(&not_empty);
    cnd_init(&not_full);
    run_all(produce_or_consume);
    int wrong = 0;
    for (size_t i = 0; i < sizeof arrived; ++i) wrong += arrived[i] != 1;
    CHECK_INT(wrong, 0);
    cnd_destroy(&not_empty);
    cnd_destroy(&not_full);
    mtx_destroy(&queue_mutex);
    CHECK(!not_empty && !not_full && !queue_mutex);
}

/* ---- a token goes round, handed on by signals without time limits: a lost one stops it ---- */

static mtx_t ring_mutex;
static cnd_t ring[thread_count];
static int holder, rounds_left;

static int pass_on(void *number)
{
    int me = (int)number - 1, next = (me + 1) % thread_count;
    mtx_lock(&ring_mutex);
    for (;;) {
        while (holder != me && rounds_left > 0) cnd_wait(&ring[me], &ring_mutex);
        if (rounds_left <= 0) break;
        if (me == 0) --rounds_left;
        holder = next;
        cnd_signal(&ring[next]);
        ++progress;
    }
    mtx_unlock(&ring_mutex);
    for (int i = 0; i < thread_count; ++i) cnd_broadcast(&ring[i]);
    return 0;
}

static void soak_ring(void)
{
    holder = 0;
    rounds_left = 100;
    mtx_init(&ring_mutex, mtx_plain);
    for (int i = 0; i < thread_count; ++i) cnd_init(&ring[i]);
    run_all(pass_on);
    for (int i = 0; i < thread_count; ++i) {
        cnd_destroy(&ring[i]);
        CHECK(ring[i] == NULL);
    }
    mtx_destroy(&ring_mutex);
    CHECK(rounds_left <= 0);
}

/* ---- once flags ---- */

enum { flag_count = 300 };
static once_flag flags[flag_count];
static atomic_int once_calls, too_early;
static volatile int finished;
static void once(void)
{
    finished = 0;
    thrd_yield();
    ++once_calls;
    finished = 1;
}

static int call_all(void *number)
{
    for (int i = 0; i < flag_count; ++i) {
        call_once(&flags[i], once);
        if (once_calls <= i) ++too_early;
        ++progress;
    }
    return 0;
}

static void soak_once(void)
{
    memset(flags, 0, sizeof flags);
    once_calls = too_early = 0;
    run_all(call_all);
    CHECK_INT(once_calls, flag_count);
    CHECK_INT(too_early, 0);
}

/* ---- threads that come and go, with values that are destroyed ---- */

static tss_t keys[3];
static atomic_int stored, destroyed;
static void destroy(void *value) { destroyed += (int)value; }
static int store(void *number)
{
    for (int i = 0; i < 3; ++i)
        if (tss_set(keys[i], number) == thrd_success) stored += (int)number;
    for (int i = 0; i < 3; ++i)
        if (tss_get(keys[i]) != number) stored += 1000000;
    return (int)number;
}
static unsigned __stdcall store_ex(void *number) { return (unsigned)store(number); }
static atomic_int detached_left;
static int store_detached(void *number)
{
    store(number);
    --detached_left;
    return 0;
}

static int come_and_go(void *number)
{
    unsigned state = (unsigned)number * 55 + progress;
    for (int i = 0; i < 25; ++i) {
        thrd_t thread;
        int value = 1 + (int)random_below(&state, 100), result = 0;
        void *handle;
        switch (random_below(&state, 4)) {
        case 0:
            ++detached_left;
            CHECK_INT(thrd_create(&thread, store_detached, (void *)value), thrd_success);
            thrd_detach(thread);
            break;
        case 1:
            handle = (void *)_beginthreadex(NULL, 0, store_ex, (void *)value, 0, NULL);
            CHECK_INT(WaitForSingleObject(handle, 60000), 0);
            CloseHandle(handle);
            break;
        default:
            CHECK_INT(thrd_create(&thread, store, (void *)value), thrd_success);
            CHECK_INT(thrd_join(thread, &result), thrd_success);
            CHECK_INT(result, value);
            CHECK_INT(thrd_join(thread, &result), thrd_error);
        }
        ++progress;
    }
    return 0;
}

static void soak_threads(void)
{
    stored = destroyed = 0;
    for (int i = 0; i < 3; ++i) tss_create(&keys[i], destroy);
    run_all(come_and_go);
    for (int i = 0; i < 3000 && (detached_left || destroyed != stored); ++i) Sleep(10); /* the detached ones */
    CHECK(detached_left == 0 && stored > 0);
    CHECK_INT(destroyed, stored);
    for (int i = 0; i < 3; ++i) tss_delete(keys[i]);
}

int main(void)
{
    static const struct {
        const char *name;
        void (*run)(void);
    } kinds[] = {{"mutexes", soak_mutexes}, {"queue", soak_queue}, {"ring", soak_ring},
                 {"once", soak_once},       {"threads", soak_threads}};
    char seconds[16] = "2";
    GetEnvironmentVariableA("VEXRT_SOAK", seconds, sizeof seconds);
    DWORD start = GetTickCount(), duration = strtoul(seconds, NULL, 10) * 1000;
    thrd_t watcher;
    thrd_create(&watcher, watch, NULL);
    unsigned rounds = 0;
    do {
        for (size_t i = 0; i < sizeof kinds / sizeof *kinds; ++i) {
            check_label = what = kinds[i].name;
            kinds[i].run();
        }
        ++rounds;
    } while (GetTickCount() - start < duration && !check_failed);
    printf("%u rounds, %u steps\n", rounds, progress);
    return check_done();
}
