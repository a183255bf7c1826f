#!/usr/bin/env bash
# <stdatomic.h> with every compiler: all operations on all sizes, and counts that are exact when two threads
# make them.
set -eu
bin=$1/bin
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
cat >atomics.c <<'C'
#include <stdatomic.h>
#include <stdio.h>
#include <threads.h>

static int failed;
#define CHECK(condition) ((condition) ? (void)0 : (void)(++failed, printf("line %d: %s\n", __LINE__, #condition)))

#define OPERATIONS(type, low, high)                                        \
    do {                                                                   \
        static _Atomic(type) object = low;                                 \
        type expected = high;                                              \
        CHECK(atomic_is_lock_free(&object));                               \
        CHECK(atomic_load(&object) == (type)(low));                        \
        atomic_store(&object, high);                                       \
        CHECK(atomic_exchange(&object, low) == (type)(high));              \
        CHECK(!atomic_compare_exchange_strong(&object, &expected, high));  \
        CHECK(expected == (type)(low));                                    \
        CHECK(atomic_compare_exchange_strong(&object, &expected, high));   \
        CHECK(atomic_fetch_sub(&object, 3) == (type)(high));               \
        CHECK(atomic_fetch_add(&object, 3) == (type)((high) - 3));         \
        CHECK(atomic_fetch_and(&object, 0x55) == (type)(high));            \
        CHECK(atomic_fetch_or(&object, 0x0A) == (type)((high) & 0x55));    \
        CHECK(atomic_fetch_xor_explicit(&object, 1, memory_order_relaxed) == (type)(((high) & 0x55) | 0x0A)); \
        atomic_init(&object, low);                                         \
        object += 2;                                                       \
        CHECK(atomic_load_explicit(&object, memory_order_acquire) == (type)((low) + 2)); \
    } while (0)

static atomic_int count;
static atomic_llong wide_count;
static atomic_flag flag = ATOMIC_FLAG_INIT;
static unsigned guarded;
static int work(void *unused)
{
    for (int i = 0; i < 20000; ++i) {
        atomic_fetch_add(&count, 1);
        wide_count += 0x100000001LL;
        while (atomic_flag_test_and_set(&flag)) thrd_yield();
        ++guarded;
        atomic_flag_clear(&flag);
    }
    return 0;
}

struct pair {
    int a, b;
};

int main(void)
{
    OPERATIONS(signed char, -100, 100);
    OPERATIONS(unsigned short, 5, 60000);
    OPERATIONS(int, -1000000, 2000000000);
    OPERATIONS(unsigned long, 1, 0xFFFFFFF0u);
    OPERATIONS(long long, -5000000000LL, 0x7000000000000001LL);
    static int array[3];
    _Atomic(int *) pointer = array;
    atomic_store(&pointer, array + 2);
    CHECK(atomic_load(&pointer) == array + 2);
    static _Atomic(double) number = 1.5;
    CHECK(atomic_exchange(&number, 2.5) == 1.5);
    CHECK(atomic_load(&number) == 2.5);
    static _Atomic(struct pair) both;
    struct pair in = {1, 2}, out;
    atomic_store(&both, in);
    out = atomic_load(&both);
    CHECK(out.a == 1 && out.b == 2);

    atomic_flag f = ATOMIC_FLAG_INIT;
    CHECK(!atomic_flag_test_and_set(&f));
    CHECK(atomic_flag_test_and_set_explicit(&f, memory_order_relaxed));
    atomic_flag_clear_explicit(&f, memory_order_release);
    CHECK(!atomic_flag_test_and_set(&f));
    atomic_flag_clear(&f);
    CHECK(!atomic_flag_test_and_set_explicit(&f, memory_order_seq_cst));
    for (int order = memory_order_relaxed; order <= memory_order_seq_cst; ++order) {
        atomic_thread_fence((memory_order)order);
        atomic_signal_fence((memory_order)order);
    }
    CHECK(kill_dependency(7) == 7 && ATOMIC_LLONG_LOCK_FREE == 2);

    thrd_t threads[2];
    for (int i = 0; i < 2; ++i) thrd_create(&threads[i], work, NULL);
    for (int i = 0; i < 2; ++i) thrd_join(threads[i], NULL);
    CHECK(count == 40000 && guarded == 40000 && wide_count == 40000 * 0x100000001LL);
    printf("%d failed\n", failed);
    return failed != 0;
}
C
passed=0 failed=0
for options in "" --target=i686-w64-windows-gnu --compiler=gcc; do
    status=0
    "$bin/vexcc" $options -O2 -Wall -Wextra -Wno-unused-parameter -Werror atomics.c -o atomics.exe >log 2>&1 &&
        "$bin/vexrun" ./atomics.exe >>log 2>&1 || status=1
    if [ $status = 0 ]; then passed=$((passed + 1)); else
        failed=$((failed + 1))
        echo "vexcc $options: $(head -5 log)"
    fi
done
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
