/* <threads.h> - C11 7.26: threads, mutexes, condition variables, thread-specific storage. */
#ifndef _THREADS_H
#define _THREADS_H

#include <time.h>

#ifndef __cplusplus
#define thread_local _Thread_local
#endif

#define TSS_DTOR_ITERATIONS 4
#define ONCE_FLAG_INIT {0, 0}

/* A thread: which record it has, and which of the threads that have had it. */
typedef struct {
    void *__record;
    unsigned int __generation;
} thrd_t;

/* A null object of these three has not been set up, or has been destroyed. */
typedef struct _vexrt_mutex *mtx_t;
typedef struct _vexrt_condition *cnd_t;
typedef struct _vexrt_storage_key *tss_t;

typedef struct {
    void *volatile __queue;
    volatile int __done;
} once_flag;

typedef int (*thrd_start_t)(void *);
typedef void (*tss_dtor_t)(void *);

enum { mtx_plain = 1, mtx_timed = 2, mtx_recursive = 16 };

enum { thrd_success, thrd_error, thrd_busy, thrd_nomem, thrd_timedout };

_VEXRT_BEGIN

/* ---- Mutexes ---- */

/*
 * Sets up a mutex of type mtx_plain or mtx_timed, with or without mtx_recursive. Returns thrd_success;
 * thrd_nomem without memory or handles; thrd_error for null or another type. The functions below give
 * thrd_error for null, too.
 */
int mtx_init(mtx_t *mtx, int type);

/* Waits for the mutex and locks it. */
int mtx_lock(mtx_t *mtx);

/*
 * Locks the mutex unless the calendar time *ts comes first: thrd_timedout. The time is converted once,
 * counted from the last full second, so that a wait may last up to a second longer; one for a time in the
 * past ends at the latest a second after the call. thrd_error for a mutex that is not timed.
 */
int mtx_timedlock(mtx_t *_VEXRT_RESTRICT mtx, const struct timespec *_VEXRT_RESTRICT ts);

/* Locks the mutex if it is free, or recursive and the caller's; else thrd_busy. */
int mtx_trylock(mtx_t *mtx);

/* Unlocks the mutex; thrd_error for one that is not locked, and for a recursive one of another thread. */
int mtx_unlock(mtx_t *mtx);

/* Destroys a mutex and makes it null. One that is locked stays as it is. */
void mtx_destroy(mtx_t *mtx);

/* ---- Condition variables ---- */

/* Sets up a condition variable. thrd_success, thrd_nomem, or thrd_error for null, as below. */
int cnd_init(cnd_t *cond);

/*
 * Unlocks the mutex, waits for a signal, and locks it again. May return without a signal.
 *
 * cnd_timedwait ends at the calendar time *ts at the latest (see mtx_timedlock) with thrd_timedout.
 * Differs from ISO C in that the mutex is then NOT locked; nor after thrd_error.
 */
int cnd_wait(cnd_t *cond, mtx_t *mtx);
int cnd_timedwait(cnd_t *_VEXRT_RESTRICT cond, mtx_t *_VEXRT_RESTRICT mtx,
                  const struct timespec *_VEXRT_RESTRICT ts);

/* Let one waiter, or all that wait now, go on. */
int cnd_signal(cnd_t *cond);
int cnd_broadcast(cnd_t *cond);

/* Destroys a condition variable and makes it null. One that is waited for stays as it is. */
void cnd_destroy(cnd_t *cond);

/* ---- Threads ---- */

/*
 * Starts a thread that calls func(arg); its result is the thread's. *thr is set before the thread runs.
 * Returns thrd_success; thrd_nomem without memory; thrd_error when the system cannot start it, or for
 * null.
 */
int thrd_create(thrd_t *thr, thrd_start_t func, void *arg);

/* The calling thread, however it was started. Both words are null when there is no memory. */
thrd_t thrd_current(void);

/* Whether both are the same thread. */
int thrd_equal(thrd_t thr0, thrd_t thr1);

/*
 * Waits until a thread has ended, stores its result in *res if that is not null, and gives the thread
 * back. thrd_error for a thread that has been joined or detached before, for one that thrd_create has
 * not started, for the caller itself.
 */
int thrd_join(thrd_t thr, int *res);

/* Lets a thread give itself back when it ends. thrd_error as above. */
int thrd_detach(thrd_t thr);

/* Ends the calling thread: storage destructors run, then it is over. */
_VEXRT_NORETURN void thrd_exit(int res);

/*
 * Is _nanosleep() of <time.h>: -1 with EINVAL for a second or more. Differs from ISO C in that, and in
 * that *remaining is set to 0.
 */
int thrd_sleep(const struct timespec *duration, struct timespec *remaining);

/* Lets other threads run. */
void thrd_yield(void);

/* ---- Thread-specific storage ---- */

/*
 * Makes a key whose value is null in every thread. The destructor, if not null, is called when a thread
 * ends with a value that is not null, up to TSS_DTOR_ITERATIONS times as long as it stores another one.
 * thrd_nomem without memory or system slots (about 1000).
 */
int tss_create(tss_t *key, tss_dtor_t dtor);

/* The calling thread's value; null for a null key. */
void *tss_get(tss_t key);

/* Sets it. thrd_nomem without memory, thrd_error when the system fails. A null key is passed over. */
int tss_set(tss_t key, void *val);

/* Deletes a key without calling destructors. */
void tss_delete(tss_t key);

/* ---- Initialisation ---- */

/* Calls `func` unless a call for this flag has returned; other callers wait for it. When `func` ends by an
   exception or a jump, the next caller calls it. */
void call_once(once_flag *flag, void (*func)(void));

_VEXRT_END

#endif
