#!/usr/bin/env bash
# setjmp and longjmp with every compiler and at every level of optimisation: what is kept, what comes back,
# and a jump out of a signal handler that an exception has called.
set -eu
bin=$1/bin
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
cat >jumps.c <<'C'
#include <setjmp.h>
#include <signal.h>
#include <stdio.h>
static jmp_buf place, outer;
static int sum;
static void __attribute__((noinline)) dive(int depth, int value)
{
    volatile char room[64];
    room[depth & 63] = 0;
    if (depth) dive(depth - 1, value);
    else longjmp(place, value);
    sum += room[0];
}
static int __attribute__((noinline)) count(int a, int b, double c)
{
    volatile int tries = 0;
    int d = a * 3, e = b * 5;
    int got = setjmp(place);
    if (got < 5) {
        tries = tries + 1;
        dive(20, got + 1);
    }
    return a + b + d + e + (int)c + tries + got;
}
static void handle(int number) { longjmp(outer, number); }
int main(void)
{
    int caught;
    for (caught = 0; caught < 3; ++caught) {
        volatile int kept = caught;
        signal(SIGSEGV, handle);
        if (setjmp(outer) == 0) *(volatile int *)16 = 1;
        caught = kept;
    }
    printf("%d %d %d\n", count(1, 2, 3.5), caught, sum);
    return 0;
}
C
passed=0 failed=0
for options in "" --target=i686-w64-windows-gnu --compiler=gcc; do
    for level in -O0 -O1 -O2 -O3; do
        "$bin/vexcc" $options $level -w jumps.c -o jumps.exe
        got=$("$bin/vexrun" ./jumps.exe 2>&1 | tr -d '\r')
        if [ "$got" = "29 3 0" ]; then passed=$((passed + 1)); else
            failed=$((failed + 1))
            echo "vexcc $options $level: $got"
        fi
    done
done
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
