/* Mutexes of every type, and condition variables: results, time-outs, what a waiter holds. */
#include "check.h"
#include "script.h"

#include <threads.h>

__declspec(dllimport) void __stdcall Sleep(unsigned long);

static struct timespec from_now(long seconds, long nanoseconds)
{
    struct timespec ts;
    timespec_get(&ts, TIME_UTC);
    ts.tv_sec += (time_t)seconds;
    ts.tv_nsec = nanoseconds;
    return ts;
}

/* Calls from another thread. */
enum call { try_lock, unlock, timed_lock, lock_and_unlock };
struct request {
    enum call call;
    mtx_t *mutex;
};
static int answer(void *argument)
{
    struct request *request = argument;
    struct timespec past = from_now(-2, 0);
    switch (request->call) {
    case try_lock: return mtx_trylock(request->mutex);
    case unlock: return mtx_unlock(request->mutex);
    case timed_lock: return mtx_timedlock(request->mutex, &past);
    default: return mtx_lock(request->mutex) * 100 + mtx_unlock(request->mutex);
    }
}
static int elsewhere(enum call call, mtx_t *mutex)
{
    struct request request = {call, mutex};
    thrd_t thread;
    int result = -1;
    CHECK_INT(thrd_create(&thread, answer, &request), thrd_success);
    CHECK_INT(thrd_join(thread, &result), thrd_success);
    return result;
}

static void test_types(void)
{
    for (int type = -1; type < 40; ++type) {
        mtx_t mutex = (mtx_t)1;
        int valid = type == 1 || type == 2 || type == 17 || type == 18;
        CHECK_INT(mtx_init(&mutex, type), valid ? thrd_success : thrd_error);
        CHECK((mutex != NULL) == valid);
        mtx_destroy(&mutex);
        CHECK(mutex == NULL);
    }
}

static void test_plain(int type)
{
    mtx_t mutex;
    struct timespec soon = from_now(1, 0);
    mtx_init(&mutex, type);
    CHECK_INT(mtx_unlock(&mutex), thrd_error); /* not locked */
    CHECK_INT(mtx_lock(&mutex), thrd_success);
    CHECK_INT(mtx_trylock(&mutex), thrd_busy);
    CHECK_INT(elsewhere(try_lock, &mutex), thrd_busy);
    CHECK_INT(elsewhere(timed_lock, &mutex), type == mtx_timed ? thrd_timedout : thrd_error);
    mtx_destroy(&mutex); /* held: stays */
    CHECK(mutex != NULL);
    CHECK_INT(mtx_unlock(&mutex), thrd_success);
    CHECK_INT(mtx_unlock(&mutex), thrd_error);
    CHECK_INT(elsewhere(lock_and_unlock, &mutex), 0);
    CHECK_INT(mtx_timedlock(&mutex, &soon), type == mtx_timed ? thrd_success : thrd_error);
    mtx_unlock(&mutex);
    CHECK_INT(mtx_trylock(&mutex), thrd_success);
    CHECK_INT(elsewhere(unlock, &mutex), thrd_success); /* a plain mutex has no owner */
    mtx_destroy(&mutex);
    CHECK(mutex == NULL);
}

static void test_recursive(int type)
{
    mtx_t mutex;
    mtx_init(&mutex, type | mtx_recursive);
    CHECK_INT(mtx_unlock(&mutex), thrd_error);
    CHECK_INT(mtx_lock(&mutex), thrd_success);
    CHECK_INT(mtx_lock(&mutex), thrd_success);
    CHECK_INT(mtx_trylock(&mutex), thrd_success);
    CHECK_INT(elsewhere(try_lock, &mutex), thrd_busy);
    CHECK_INT(elsewhere(unlock, &mutex), thrd_error);
    CHECK_INT(elsewhere(timed_lock, &mutex), type == mtx_timed ? thrd_timedout : thrd_error);
    mtx_destroy(&mutex);
    CHECK(mutex != NULL);
    for (int i = 0; i < 3; ++i) {
        CHECK_INT(elsewhere(try_lock, &mutex), thrd_busy);
        CHECK_INT(mtx_unlock(&mutex), thrd_success);
    }
    CHECK_INT(mtx_unlock(&mutex), thrd_error);
    CHECK_INT(elsewhere(lock_and_unlock, &mutex), 0);
    mtx_destroy(&mutex);
    CHECK(mutex == NULL);
}

static void test_null(void)
{
    struct timespec soon = from_now(1, 0);
    mtx_t mutex = NULL, good;
    cnd_t condition = NULL, good_condition;
    mtx_init(&good, mtx_timed);
    cnd_init(&good_condition);
    CHECK_INT(mtx_init(NULL, mtx_plain), thrd_error);
    for (int i = 0; i < 2; ++i) {
        mtx_t *null = i ? &mutex : NULL;
        CHECK_INT(mtx_lock(null), thrd_error);
        CHECK_INT(mtx_trylock(null), thrd_error);
        CHECK_INT(mtx_timedlock(null, &soon), thrd_error);
        CHECK_INT(mtx_unlock(null), thrd_error);
        mtx_destroy(null);
        cnd_t *no_condition = i ? &condition : NULL;
        CHECK_INT(cnd_wait(no_condition, &good), thrd_error);
        CHECK_INT(cnd_timedwait(no_condition, &good, &soon), thrd_error);
        CHECK_INT(cnd_signal(no_condition), thrd_error);
        CHECK_INT(cnd_broadcast(no_condition), thrd_error);
        cnd_destroy(no_condition);
        CHECK_INT(cnd_wait(&good_condition, null), thrd_error);
    }
    CHECK_INT(mtx_timedlock(&good, NULL), thrd_error);
    CHECK_INT(cnd_timedwait(&good_condition, &good, NULL), thrd_error);
    CHECK_INT(cnd_init(NULL), thrd_error);
    mtx_destroy(&good);
    cnd_destroy(&good_condition);
    CHECK(good_condition == NULL);
}

/* ---- time-outs, with the system's wait scripted ---- */

static unsigned long waited;
static unsigned long __stdcall note_wait(void *object, unsigned long milliseconds)
{
    waited = milliseconds;
    return 258; /* time-out */
}
static void __stdcall fixed_time(unsigned long long *now)
{
    *now = 116444736000000000 + 12782448009000000; /* .9 of the second */
}

static void test_durations(void)
{
    static const struct {
        unsigned long seconds;
        long nanoseconds;
        unsigned long due;
    } cases[] = {
        {1278244799, 999999999, 0},      {0, 0, 0},
        {1278244800, 0, 0},              {1278244800, 1, 1},
        {1278244800, 1000000, 1},        {1278244800, 1000001, 2},
        {1278244800, 500000000, 500},    {1278244801, 0, 1000},
        {1278244801, 999999999, 2000},   {1278244860, 250000000, 60250},
        {1278244800 + 4294967, 295000000, 0xFFFFFFFE}, {0xFFFFFFFF, 0, 0xFFFFFFFE},
        {1278244800, -5000000, 0},
    };
    mtx_t mutex;
    mtx_init(&mutex, mtx_timed);
    mtx_lock(&mutex);
    script_import("WaitForSingleObject", note_wait);
    script_import("GetSystemTimeAsFileTime", fixed_time);
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        struct timespec ts = {cases[i].seconds, cases[i].nanoseconds};
        CHECK_INT(mtx_timedlock(&mutex, &ts), thrd_timedout);
        CHECK_INT(waited, cases[i].due);
    }
    script_restore();
    mtx_unlock(&mutex);
    mtx_destroy(&mutex);
}

/* ---- condition variables ---- */

static mtx_t mutex;
static cnd_t condition;
static int waiting, woken, wanted;

static int wait_for_turn(void *timed)
{
    int result = thrd_success;
    mtx_lock(&mutex);
    ++waiting;
    struct timespec later = from_now(30, 0);
    while (wanted == 0 && result == thrd_success)
        result = timed ? cnd_timedwait(&condition, &mutex, &later) : cnd_wait(&condition, &mutex);
    --wanted;
    ++woken;
    mtx_unlock(&mutex);
    return result;
}

static int look(const int *at)
{
    mtx_lock(&mutex);
    int value = *at;
    mtx_unlock(&mutex);
    return value;
}

static int becomes(const int *at, int due)
{
    for (int i = 0; i < 2000 && look(at) != due; ++i) Sleep(5);
    return look(at) == due;
}

static void signal_some(int count, int all)
{
    mtx_lock(&mutex);
    wanted += count;
    mtx_unlock(&mutex);
    if (all) CHECK_INT(cnd_broadcast(&condition), thrd_success);
    else CHECK_INT(cnd_signal(&condition), thrd_success);
}

static void test_signals(void)
{
    enum { count = 10 };
    thrd_t threads[count];
    mtx_init(&mutex, mtx_plain);
    CHECK_INT(cnd_init(&condition), thrd_success);
    CHECK_INT(cnd_signal(&condition), thrd_success); /* nobody there: nothing is kept */
    CHECK_INT(cnd_broadcast(&condition), thrd_success);
    for (int i = 0; i < count; ++i) thrd_create(&threads[i], wait_for_turn, i % 2 ? &threads : NULL);
    CHECK(becomes(&waiting, count));
    Sleep(20);
    CHECK_INT(look(&woken), 0);
    cnd_destroy(&condition); /* waited for: stays */
    CHECK(condition != NULL);
    for (int i = 1; i <= 3; ++i) {
        signal_some(1, 0);
        CHECK(becomes(&woken, i));
    }
    signal_some(count - 3, 1);
    CHECK(becomes(&woken, count));
    for (int i = 0; i < count; ++i) {
        int result = -1;
        CHECK_INT(thrd_join(threads[i], &result), thrd_success);
        CHECK_INT(result, thrd_success);
    }
    cnd_destroy(&condition);
    CHECK(condition == NULL);
}

static void test_timed_wait(void)
{
    struct timespec past = from_now(-5, 0);
    cnd_init(&condition);
    for (int i = 0; i < 3; ++i) {
        mtx_lock(&mutex);
        CHECK_INT(cnd_timedwait(&condition, &mutex, &past), thrd_timedout);
        CHECK_INT(mtx_unlock(&mutex), thrd_error); /* not held after a time-out */
    }
    struct timespec soon = from_now(1, 0);
    mtx_lock(&mutex);
    CHECK_INT(cnd_timedwait(&condition, &mutex, &soon), thrd_timedout);
    CHECK_INT(mtx_trylock(&mutex), thrd_success);
    mtx_unlock(&mutex);
    CHECK_INT(cnd_wait(&condition, &mutex), thrd_error); /* not locked */
    /* After all this a signal still finds its waiter. */
    thrd_t thread;
    waiting = woken = wanted = 0;
    thrd_create(&thread, wait_for_turn, NULL);
    CHECK(becomes(&waiting, 1));
    signal_some(1, 0);
    CHECK(becomes(&woken, 1));
    thrd_join(thread, NULL);
    cnd_destroy(&condition);
    CHECK(condition == NULL);
    mtx_destroy(&mutex);
}

int main(void)
{
    test_types();
    for (int round = 0; round < 2; ++round) { /* with one thread so far, and with many */
        test_plain(mtx_plain);
        test_plain(mtx_timed);
        test_recursive(mtx_plain);
        test_recursive(mtx_timed);
    }
    test_null();
    test_durations();
    test_signals();
    test_timed_wait();
    return check_done();
}
