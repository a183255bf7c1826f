/* options: -fno-builtin */
/* Several threads at the heap at once, from the first moment on, and the lock that they share. */
#include "check.h"
#include "child.h"

#include <malloc.h>
#include <stdlib.h>

#define THREADS 4
#define CALLS 150000
#define LIVE 256

static unsigned char *volatile mailbox[16]; /* blocks that one thread makes and another one frees */

static unsigned char *post(unsigned slot, unsigned char *block)
{
    return __atomic_exchange_n(&mailbox[slot], block, __ATOMIC_ACQ_REL);
}

static int is_filled(const unsigned char *block, unsigned char with, size_t size)
{
    for (size_t i = 0; i < size; ++i)
        if (block[i] != with) return 0;
    return 1;
}

/* Returns how often a block did not hold what was put into it. */
static unsigned long __stdcall worker(void *argument)
{
    unsigned char *live[LIVE] = {0}, mark = (unsigned char)(size_t)argument;
    unsigned char sizes[LIVE] = {0};
    unsigned seed = mark * 7919u;
    unsigned long wrong = 0;
    for (unsigned call = 0; call < CALLS; ++call) {
        seed = seed * 1664525u + 1013904223u;
        unsigned slot = seed >> 8 & (LIVE - 1);
        if (live[slot] && !is_filled(live[slot], mark, sizes[slot])) ++wrong;
        if (seed >> 28 == 0) {
            free(post(seed >> 16 & 15, malloc(seed >> 20 & 511)));
            continue;
        }
        sizes[slot] = (unsigned char)(seed >> 16);
        if (seed >> 30) {
            free(live[slot]);
            live[slot] = malloc(sizes[slot]);
        } else {
            live[slot] = realloc(live[slot], sizes[slot] + 1);
        }
        memset(live[slot], mark, sizes[slot]);
    }
    for (unsigned slot = 0; slot < LIVE; ++slot) free(live[slot]);
    return wrong;
}

CHILD_IMPORT int __stdcall GetExitCodeThread(void *thread, unsigned long *status);

/* The first thread is at the heap at full speed when the process gets its second one. */
static int arrival(void)
{
    unsigned long wrong = 1;
    void *thread = CreateThread(NULL, 0, worker, (void *)1, 0, NULL);
    CHECK_INT(worker((void *)2), 0);
    CHECK_INT(WaitForSingleObject(thread, 20000), 0);
    CHECK(GetExitCodeThread(thread, &wrong));
    CHECK_INT(wrong, 0);
    CHECK_INT(__heap_validate(NULL), 1);
    return check_done();
}

int main(int argc, char **argv)
{
    if (argc > 1) return arrival();
    for (int i = 0; i < 10; ++i) {
        struct child child = child_run("arrival", NULL);
        CHECK_INT(child.status, 0);
        if (child.status != 0) printf("%s", child.output);
    }
    for (int round = 0; round < 5; ++round) {
        void *threads[THREADS];
        for (size_t i = 0; i < THREADS; ++i)
            threads[i] = CreateThread(NULL, 0, worker, (void *)(i + 1), 0, NULL);
        unsigned long wrong = round == 0 ? worker((void *)100) : 0; /* this thread, too */
        CHECK_INT(wrong, 0);
        for (int i = 0; i < THREADS; ++i) {
            CHECK_INT(WaitForSingleObject(threads[i], 60000), 0); /* no wake-up is lost */
            CHECK(GetExitCodeThread(threads[i], &wrong));
            CHECK_INT(wrong, 0);
            CloseHandle(threads[i]);
        }
        CHECK_INT(__heap_validate(NULL), 1);
    }
    for (unsigned slot = 0; slot < 16; ++slot) free(post(slot, NULL));
    CHECK_INT(__heap_validate(NULL), 1);
    return check_done();
}
