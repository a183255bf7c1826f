/*
 * Locks under several threads: nothing is lost when threads share a stream and one more flushes all
 * streams without end, also across the arrival of the second thread, when the library begins to lock for
 * real.
 */
#include "check.h"
#include "child.h"

#include <stdlib.h>

__declspec(dllimport) int __stdcall DeleteFileA(const char *path);

#define NAME "locks.tmp"
enum { thread_count = 4, line_count = 10000 };

static FILE *shared;

static unsigned long __stdcall write_lines(void *argument)
{
    char line[16];
    int number = (int)(size_t)argument;
    for (int i = 0; i < line_count; ++i) {
        sprintf(line, "%d:%06d\n", number, i);
        fputs(line, shared);
    }
    return 0;
}

static volatile int flush_on = 1;
static unsigned long __stdcall flush_streams(void *unused)
{
    while (flush_on) fflush(NULL);
    return 0;
}

/* Every line must be whole, and each thread's lines in their order. */
static void test_lines_stay_whole(void)
{
    void *threads[thread_count];
    int next[thread_count + 1] = {0}, bad = 0;
    char line[64];
    shared = fopen(NAME, "wb");
    for (int i = 0; i < thread_count; ++i)
        threads[i] = CreateThread(NULL, 0, write_lines, (void *)(size_t)i, 0, NULL);
    void *flusher = CreateThread(NULL, 0, flush_streams, NULL, 0, NULL);
    write_lines((void *)thread_count); /* this thread is in the middle of it when the others come */
    for (int i = 0; i < thread_count; ++i) {
        CHECK_INT(WaitForSingleObject(threads[i], 60000), 0);
        CloseHandle(threads[i]);
    }
    flush_on = 0;
    CHECK_INT(WaitForSingleObject(flusher, 60000), 0);
    CloseHandle(flusher);
    fclose(shared);
    shared = fopen(NAME, "rb");
    while (fgets(line, sizeof line, shared)) {
        char due[16];
        int number = line[0] - '0';
        if (number < 0 || number > thread_count) {
            ++bad;
            continue;
        }
        sprintf(due, "%d:%06d\n", number, next[number]++);
        if (strcmp(line, due) != 0) ++bad;
    }
    fclose(shared);
    CHECK_INT(bad, 0);
    for (int i = 0; i <= thread_count; ++i) CHECK_INT(next[i], line_count);
}

int main(void)
{
    test_lines_stay_whole();
    FILE *file = fopen(NAME, "r");
    CHECK(freopen(NAME, "r", file) == file); /* takes locks again that it holds */
    CHECK_INT(fclose(file), 0);
    DeleteFileA(NAME);
    return check_done();
}
