/*
 * Starts programs in turn and prints what a start costs: the first quartile of many, in nanoseconds,
 * one line a program. Half of all starts take some 20 ms more, whatever is started; the quartile is
 * below that.
 *
 *   starts COUNT PROGRAM...
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

struct startup {
    unsigned long size;
    char *names[3];
    unsigned long numbers[7], flags;
    unsigned short show, reserved_size;
    unsigned char *reserved;
    void *streams[3];
};

struct process {
    void *process, *thread;
    unsigned long process_id, thread_id;
};

#define IMPORT __declspec(dllimport)
IMPORT int __stdcall CreateProcessA(const char *, char *, void *, void *, int, unsigned long, void *,
                                    const char *, struct startup *, struct process *);
IMPORT unsigned long __stdcall WaitForSingleObject(void *, unsigned long);
IMPORT int __stdcall CloseHandle(void *);
IMPORT int __stdcall QueryPerformanceCounter(long long *);
IMPORT int __stdcall QueryPerformanceFrequency(long long *);

enum { program_limit = 8, count_limit = 1000 };
static long long times[program_limit][count_limit];

static long long start(const char *program)
{
    struct startup startup = {.size = sizeof startup};
    struct process process;
    long long begin, end;
    char line[1024];
    snprintf(line, sizeof line, "%s", program);
    QueryPerformanceCounter(&begin);
    if (!CreateProcessA(NULL, line, NULL, NULL, 0, 0, NULL, NULL, &startup, &process)) {
        fprintf(stderr, "cannot start %s\n", program);
        exit(1);
    }
    WaitForSingleObject(process.process, 0xFFFFFFFF);
    QueryPerformanceCounter(&end);
    CloseHandle(process.process);
    CloseHandle(process.thread);
    return end - begin;
}

static int ascending(const void *a, const void *b)
{
    long long x = *(const long long *)a, y = *(const long long *)b;
    return (x > y) - (x < y);
}

int main(int argc, char **argv)
{
    long long frequency;
    int count = 0, programs = argc - 2;
    for (const char *digit = argc > 1 ? argv[1] : ""; *digit; ++digit) count = 10 * count + (*digit - '0');
    if (programs < 1 || programs > program_limit || count < 1 || count > count_limit) return 2;
    QueryPerformanceFrequency(&frequency);
    for (int i = 0; i < count; ++i)
        for (int k = 0; k < programs; ++k) times[k][i] = start(argv[k + 2]);
    for (int k = 0; k < programs; ++k) {
        qsort(times[k], (size_t)count, sizeof times[k][0], ascending);
        printf("starts\t%lld\n", times[k][count / 4] * 1000000000 / frequency);
    }
    return 0;
}
