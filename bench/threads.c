/* Threads, mutexes, once flags and thread-specific storage. The peers without <threads.h> have their own
   names for the same things: critical sections and pthreads. */
#include "bench.h"

#ifdef __VEXRT__
#include <threads.h>
typedef mtx_t mutex;
typedef thrd_t thread;
#define mutex_init(m) mtx_init(m, mtx_plain)
#define mutex_lock(m) mtx_lock(m)
#define mutex_unlock(m) mtx_unlock(m)
#define thread_result int
#define thread_start(t, f, a) thrd_create(t, f, a)
#define thread_join(t) thrd_join(t, NULL)
static once_flag once = ONCE_FLAG_INIT;
static tss_t key;
#define once_call() call_once(&once, nothing)
#define key_create() tss_create(&key, NULL)
#define key_set(v) tss_set(key, v)
#define key_get() tss_get(key)
#elif defined _WIN32
#include <stdint.h>
typedef struct { void *words[6]; } mutex;
typedef uintptr_t thread;
#define SYSTEM __declspec(dllimport)
SYSTEM void __stdcall InitializeCriticalSection(mutex *);
SYSTEM void __stdcall EnterCriticalSection(mutex *);
SYSTEM void __stdcall LeaveCriticalSection(mutex *);
SYSTEM unsigned long __stdcall WaitForSingleObject(void *, unsigned long);
SYSTEM int __stdcall CloseHandle(void *);
SYSTEM int __stdcall InitOnceExecuteOnce(void **, int(__stdcall *)(void **, void *, void **), void *, void **);
SYSTEM unsigned long __stdcall TlsAlloc(void);
SYSTEM void *__stdcall TlsGetValue(unsigned long);
SYSTEM int __stdcall TlsSetValue(unsigned long, void *);
SYSTEM uintptr_t __cdecl _beginthreadex(void *, unsigned, unsigned(__stdcall *)(void *), void *, unsigned, unsigned *);
#define mutex_init(m) InitializeCriticalSection(m)
#define mutex_lock(m) EnterCriticalSection(m)
#define mutex_unlock(m) LeaveCriticalSection(m)
#define thread_result unsigned __stdcall
#define thread_start(t, f, a) (*(t) = _beginthreadex(NULL, 0, f, a, 0, NULL))
#define thread_join(t) (WaitForSingleObject((void *)(t), 0xFFFFFFFF), CloseHandle((void *)(t)))
static void *once;
static unsigned long key;
static int __stdcall nothing_once(void **flag, void *parameter, void **context) { return 1; }
#define once_call() InitOnceExecuteOnce(&once, nothing_once, NULL, NULL)
#define key_create() (key = TlsAlloc())
#define key_set(v) TlsSetValue(key, v)
#define key_get() TlsGetValue(key)
#else
#include <pthread.h>
typedef pthread_mutex_t mutex;
typedef pthread_t thread;
#define mutex_init(m) pthread_mutex_init(m, NULL)
#define mutex_lock(m) pthread_mutex_lock(m)
#define mutex_unlock(m) pthread_mutex_unlock(m)
#define thread_result void *
#define thread_start(t, f, a) pthread_create(t, NULL, f, a)
#define thread_join(t) pthread_join(t, NULL)
static pthread_once_t once = PTHREAD_ONCE_INIT;
static pthread_key_t key;
#define once_call() pthread_once(&once, nothing)
#define key_create() pthread_key_create(&key, NULL)
#define key_set(v) pthread_setspecific(key, v)
#define key_get() pthread_getspecific(key)
#endif

static mutex shared;
static unsigned counter;

__attribute__((unused)) static void nothing(void) {}
static thread_result do_nothing(void *argument) { return 0; }

/* A short section with a little work outside it. */
static void work(unsigned rounds)
{
    for (unsigned i = 0; i < rounds; ++i) {
        mutex_lock(&shared);
        ++counter;
        mutex_unlock(&shared);
        for (volatile int k = 0; k < 20; ++k) { }
    }
}

enum { rounds = 20000 };
static thread_result work_in_thread(void *argument)
{
    work(rounds);
    return 0;
}

static void contend(int count)
{
    thread threads[8];
    for (int i = 0; i < count; ++i) thread_start(&threads[i], work_in_thread, NULL);
    for (int i = 0; i < count; ++i) thread_join(threads[i]);
}

int main(void)
{
    thread one;
    mutex_init(&shared);
    key_create();
    key_set(&one);
    BENCH("lock and unlock, only one thread so far", 1, mutex_lock(&shared); mutex_unlock(&shared));
    BENCH("a thread started and joined", 1, thread_start(&one, do_nothing, NULL); thread_join(one));
    BENCH("lock and unlock", 1, mutex_lock(&shared); mutex_unlock(&shared));
    BENCH("lock and unlock, two threads", 2 * rounds, contend(2));
    BENCH("lock and unlock, four threads", 4 * rounds, contend(4));
    BENCH("a once flag that is done", 1, once_call());
    BENCH("thread-specific value, read", 1, bench_keep(key_get()));
    BENCH("thread-specific value, stored", 1, key_set(&one));
    return 0;
}
