#!/usr/bin/env bash
# Every kind of program with every compiler: the four kinds of main(), DLLs, constructors and
# destructors, thread-local variables, large frames, 64-bit arithmetic.
set -eu
bin=$1/bin
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
passed=0 failed=0
export PROGRAMS=tested

cat >body.h <<'C'
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
_Thread_local int counter = 40;
_Thread_local char zeroed[3000];
static int order;
__attribute__((constructor)) static void construct(void) { order = 1; }
__attribute__((destructor)) static void destruct(void) { fputs("destructed\n", stdout); }
static void at_exit(void) { fputs("exit ", stdout); }
__declspec(dllimport) void *__stdcall CreateThread(void *, unsigned, unsigned long(__stdcall *)(void *), void *, unsigned long, unsigned long *);
__declspec(dllimport) unsigned long __stdcall WaitForSingleObject(void *, unsigned long);
static unsigned long __stdcall thread(void *argument)
{
    *(int *)argument = ++counter + (zeroed[2999]++);
    return 0;
}
static int large_frame(int n)
{
    volatile char room[100000];
    room[0] = (char)n;
    room[99999] = 1;
    return room[0] + room[99999];
}
static int run(int count)
{
    volatile long long a = -7, b = 2, c = 0x7000000000000000LL;
    volatile unsigned long long u = 18446744073709551615ULL, v = 10000000019ULL;
    volatile double d = 1e18, e;
    int there = 0;
    long long product;
    atexit(at_exit);
    counter += 2;
    WaitForSingleObject(CreateThread(0, 0, thread, &there, 0, 0), 10000);
    printf("%d %d %d %d %lld %lld %llu %llu ", order, count, counter, there, a / b, a % b, u / v, u % v);
    e = (double)u;
    printf("%d %lld %llu %d %d ", __builtin_mul_overflow(c, b, &product), (long long)d, (unsigned long long)d,
           e == 18446744073709551616.0, large_frame(5));
    printf("%lld %llu\n", a >> (int)b, u >> (int)b);
    return 21;
}
C
cat >main.c <<'C'
#include "body.h"
int main(int argc, char **argv, char **variables)
{
    while (*variables && **variables != '=' && strcmp(*variables, "PROGRAMS=tested")) ++variables;
    return run(argc) + (*variables && argc == 3 && !strcmp(argv[2], "b c") ? 1 : 0);
}
C
cat >wmain.c <<'C'
#include "body.h"
#include <wchar.h>
int wmain(int argc, wchar_t **argv, wchar_t **variables)
{
    while (*variables && **variables != '=' && wcscmp(*variables, L"PROGRAMS=tested")) ++variables;
    return run(argc) + (*variables && argc == 3 && !wcscmp(argv[2], L"b c") ? 1 : 0);
}
C
cat >WinMain.c <<'C'
#include "body.h"
int __stdcall WinMain(void *self, void *previous, char *line, int show)
{
    return run(3) + (self && !previous && !strcmp(line, "a \"b c\"") ? 1 : 0);
}
C
cat >wWinMain.c <<'C'
#include "body.h"
#include <wchar.h>
int __stdcall wWinMain(void *self, void *previous, wchar_t *line, int show)
{
    return run(3) + (self && !previous && !wcscmp(line, L"a \"b c\"") ? 1 : 0);
}
C
cat >dll.c <<'C'
#include <stdio.h>
#include <stdlib.h>
static int state;
__attribute__((constructor)) static void construct(void) { state = 5; }
__attribute__((destructor)) static void destruct(void) { puts("dll destructed"); }
__declspec(dllexport) char *twice(int n)
{
    char *text = malloc(20);
    sprintf(text, "%d", 2 * n + state);
    return text;
}
C
cat >user.c <<'C'
#include <stdio.h>
#include <stdlib.h>
__declspec(dllimport) char *twice(int n);
int main(void)
{
    char *text = twice(21);
    puts(text);
    free(text);
    return 0;
}
C

report() { # NAME GOT DUE
    if [ "$2" = "$3" ]; then passed=$((passed + 1)); else
        failed=$((failed + 1))
        printf '%s: got  %s\n%s: due  %s\n' "$1" "$2" "$1" "$3"
    fi
}

due='1 3 42 41 -3 -1 1844674403 8660737958 1 1000000000000000000 1000000000000000000 1 6 -2 4611686018427387903|exit destructed|status 22'
for options in "" --target=i686-w64-windows-gnu --compiler=gcc; do
    for kind in main wmain WinMain wWinMain; do
        "$bin/vexcc" $options -O1 $kind.c -o $kind.exe || true
        got=$({ "$bin/vexrun" $kind.exe a "b c"; echo "status $?"; } 2>&1 | tr -d '\r' | paste -sd '|')
        report "vexcc $options, $kind" "${got/ |exit/|exit}" "$due"
    done
    "$bin/vexcc" $options -shared dll.c -o dll.dll && "$bin/vexcc" $options user.c dll.lib -o user.exe || true
    got=$({ "$bin/vexrun" user.exe; echo "status $?"; } 2>&1 | tr -d '\r' | paste -sd '|')
    report "vexcc $options, DLL" "$got" "47|dll destructed|status 0"
done
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
