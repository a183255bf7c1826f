/* Command pipes: both directions, text and bytes, large transfers, what stays as it was. */
#include "check.h"
#include "script.h"

#include <io.h>
#include <stdlib.h>

__declspec(dllimport) void *__stdcall CreateThread(void *, size_t, unsigned long(__stdcall *)(void *), void *,
                                                   unsigned long, unsigned long *);
__declspec(dllimport) unsigned long __stdcall WaitForSingleObject(void *object, unsigned long milliseconds);

static unsigned long __stdcall flush_all(void *unused) { return (unsigned long)fflush(NULL); }

/* While standard output is redirected, another thread flushes to it. */
static int(__stdcall *real_duplicate)(void *, void *, void *, void **, unsigned, int, unsigned);
static void *flusher;
static int __stdcall duplicate_and_flush(void *from_process, void *from, void *to_process, void **to, unsigned access,
                                         int inherit, unsigned options)
{
    if (!flusher) {
        flusher = CreateThread(NULL, 0, flush_all, NULL, 0, NULL);
        WaitForSingleObject(flusher, 50);
    }
    return real_duplicate(from_process, from, to_process, to, access, inherit, options);
}

static void test_flush_meanwhile(void)
{
    static char buffer[64];
    char line[20];
    setvbuf(stdout, buffer, _IOFBF, sizeof buffer);
    printf("buffered\n");
    real_duplicate = script_import("DuplicateHandle", duplicate_and_flush);
    FILE *pipe = _popen("echo one", "r");
    script_restore();
    CHECK_INT(WaitForSingleObject(flusher, 10000), 0);
    CHECK_STR(fgets(line, sizeof line, pipe), "one\n");
    CHECK_INT(_pclose(pipe), 0);
}

int main(void)
{
    test_flush_meanwhile();
    char line[80], *block = malloc(65536);
    FILE *pipe = _popen("echo one&& echo two", "r");
    CHECK_STR(fgets(line, sizeof line, pipe), "one\n");
    CHECK_STR(fgets(line, sizeof line, pipe), "two\n");
    CHECK(!fgets(line, sizeof line, pipe) && feof(pipe));
    CHECK_INT(_pclose(pipe), 0);
    CHECK_INT(_pclose(pipe), -1); /* not one any more */
    pipe = _popen("echo one", "rb");
    CHECK_STR(fgets(line, sizeof line, pipe), "one\r\n");
    CHECK_INT(_pclose(pipe), 0);
    pipe = _wpopen(L"exit 9", L"r");
    CHECK_INT(_pclose(pipe), 9);
    /* written to a child that writes to a file */
    pipe = _popen("child copy >popen-copy.tmp", "w");
    CHECK(pipe != NULL);
    for (int i = 0; i < 1000; ++i) fprintf(pipe, "line %d\n", i);
    CHECK_INT(_pclose(pipe), 7);
    FILE *file = fopen("popen-copy.tmp", "r");
    int wrong = 0;
    for (int i = 0; i < 1000; ++i) {
        char due[20];
        sprintf(due, "LINE %d\n", i);
        wrong += !fgets(line, sizeof line, file) || strcmp(line, due);
    }
    CHECK_INT(wrong, 0);
    fclose(file);
    /* more than the pipe holds, two at a time */
    FILE *first = _popen("child fill 1000000", "rb"), *second = _popen("child fill 300000", "rb");
    size_t total[2] = {0, 0}, count;
    while ((count = fread(block, 1, 65536, first)) != 0) total[0] += count;
    while ((count = fread(block, 1, 65536, second)) != 0) total[1] += count;
    CHECK_INT(total[0], 1000000);
    CHECK_INT(total[1], 300000);
    CHECK_INT(_pclose(second), 0);
    CHECK_INT(_pclose(first), 0);
    /* a reader that is gone */
    pipe = _popen("exit 2", "w");
    memset(block, 'x', 65536);
    for (int i = 0; i < 10 && !ferror(pipe); ++i) fwrite(block, 1, 65536, pipe);
    CHECK(ferror(pipe));
    CHECK_INT(_pclose(pipe), 2);
    CHECK(!_popen(NULL, "r") && !_popen("echo", NULL) && !_popen("echo", "") && !_popen("echo", "x"));
    CHECK(!_popen("echo", "rt")); /* a mode that no stream has */
    CHECK_INT(_pclose(NULL), -1);
    CHECK_INT(_pclose(stdout), -1);
    /* the standard descriptors are what they were */
    CHECK_INT(_write(1, "", 0), 0);
    CHECK(printf("still here\n") > 0 && !ferror(stdout));
    return check_done();
}
