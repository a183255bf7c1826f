/* Pseudo-random sequences, recomputed here from their definition; the system's generator and all its
   failures. */
#include "check.h"
#include "child.h"
#include "script.h"
#include "violations.h"

#include <stdlib.h>

struct generator {
    unsigned state, table[32], last;
};

static unsigned step(struct generator *g) { return g->state = 1664525u * g->state + 1013904223u; }

static void seed(struct generator *g, unsigned value)
{
    g->state = value;
    for (int i = 0; i < 8; ++i) step(g);
    for (int i = 0; i < 32; ++i) g->table[i] = step(g);
    g->last = g->table[31];
}

static unsigned next(struct generator *g)
{
    unsigned fresh = step(g), slot = g->last & 31;
    g->last = g->table[slot];
    g->table[slot] = fresh;
    return g->last & 0x3FFFFFFF;
}

/* Whether the calling thread's next `count` numbers are the generator's. */
static int follows(struct generator *g, int count)
{
    for (int i = 0; i < count; ++i)
        if ((unsigned)rand() != next(g)) return 0;
    return 1;
}

static unsigned long __stdcall thread(void *result)
{
    struct generator g;
    seed(&g, 1); /* without a call of srand() */
    *(int *)result = follows(&g, 100);
    return 0;
}

static void test_sequences(void)
{
    static const unsigned seeds[] = {1, 0, 2, 12345, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
    struct generator g;
    int there = 0;
    seed(&g, 1);
    CHECK(follows(&g, 1000));
    for (size_t i = 0; i < sizeof seeds / sizeof *seeds; ++i) {
        srand(seeds[i]);
        seed(&g, seeds[i]);
        CHECK(follows(&g, 100000));
    }
    void *other = CreateThread(NULL, 0, thread, &there, 0, NULL);
    WaitForSingleObject(other, 10000);
    CloseHandle(other);
    CHECK(there);
    CHECK(follows(&g, 10)); /* the other thread's sequence was its own */
    CHECK_INT(RAND_MAX, 1073741823);
}

/* ---- the system's generator, scripted ---- */

__declspec(dllimport) void __stdcall SetLastError(unsigned long);
static unsigned long acquire_error, draw_error, release_error;
static int released, arguments_right;

enum { NO_CAUSE = 4711 }; /* fails without an error */

static int fail(unsigned long error)
{
    SetLastError(error == NO_CAUSE ? 0 : error);
    return error == 0;
}

static int __stdcall acquire(unsigned *provider, const void *container, const void *name,
                             unsigned long type, unsigned long flags)
{
    arguments_right = !container && !name && type == 1 && flags == 0xF0000040;
    *provider = 321;
    return fail(acquire_error);
}

static int __stdcall draw(unsigned provider, unsigned long size, unsigned char *to)
{
    arguments_right &= provider == 321 && size == 4;
    memcpy(to, "\x11\x22\x33\x44", 4);
    return fail(draw_error);
}

static int __stdcall release(unsigned provider, unsigned long flags)
{
    arguments_right &= provider == 321 && flags == 0;
    ++released;
    return fail(release_error);
}

static void test_failures(void)
{
    static const struct {
        unsigned long acquire, draw, release;
        int code, released;
    } cases[] = {
        {0, 0, 0, 0, 1},       {2, 0, 0, 2, 0},        {8, 0, 0, 12, 0},
        {5, 0, 0, 22, 0},      {0, 0x8009000E, 0, 12, 1}, {0, 2, 0, 2, 1},
        {0, 8, 5, 12, 1},      {0, 87, 0, 22, 1},      {0, 0, 2, 2, 1},
        {0, 0, 8, 12, 1},      {0, 0, 6, 22, 1},       {0x8009000E, 0, 0, 12, 0},
        {NO_CAUSE, 0, 0, 22, 0}, {0, NO_CAUSE, 0, 22, 1}, {0, 0, NO_CAUSE, 22, 1},
    };
    script_import("CryptAcquireContextW", acquire);
    script_import("CryptGenRandom", draw);
    script_import("CryptReleaseContext", release);
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        unsigned value = 99;
        acquire_error = cases[i].acquire;
        draw_error = cases[i].draw;
        release_error = cases[i].release;
        released = 0;
        CHECK_INT(_rand_s(&value), cases[i].code);
        CHECK_INT(value, cases[i].code ? 0 : 0x44332211);
        CHECK_INT(released, cases[i].released);
        CHECK(arguments_right);
    }
    script_restore();
}

static void test_system_generator(void)
{
    unsigned a = 0, b = 0, all = 0;
    for (int i = 0; i < 32; ++i) {
        CHECK_INT(_rand_s(&a), 0);
        all |= a ^ b;
        b = a;
    }
    CHECK_INT(all, 0xFFFFFFFFu); /* every bit changed once: else with a probability of 2^-26 */
    count_violations();
    CHECK_REFUSED(_rand_s(NULL), EINVAL, EINVAL);
}

static void *__stdcall no_block(void *heap, unsigned long flags, size_t size) { return NULL; }
static void *__stdcall no_pages(void *address, size_t size, unsigned long type, unsigned long protect)
{
    return NULL;
}

/* A thread's first number needs a table. */
static int child_main(void)
{
    script_import("HeapAlloc", no_block);
    script_import("VirtualAlloc", no_pages);
    void *volatile block;
    do block = malloc(8);
    while (block);
    return rand();
}

int main(int argc, char **argv)
{
    if (argc > 1) return child_main();
    test_sequences();
    test_failures();
    test_system_generator();
    struct child child = child_run("exhaust", NULL);
    CHECK_INT(child.status, 255);
    CHECK(strstr(child.error, "CRT: out of memory -- terminating") != NULL);
    return check_done();
}
