/* Processes, pipes, files by name, the environment, memory streams. */
#include "bench.h"

#include <stdlib.h>
#include <string.h>

#ifdef _WIN32
#include <sys/stat.h>
#if defined(__VEXRT__)
#include <dirent.h>
#define opendir _opendir
#define readdir _readdir
#define closedir _closedir
#define status_of(path, to) _stat(path, (struct stat *)(to))
#else
#include <dirent.h>
#define status_of(path, to) stat(path, (struct stat *)(to))
#endif
#include <direct.h>
#define make_directory(path) _mkdir(path)
#define remove_directory(path) _rmdir(path)
#define NOTHING "exit 0"
#define SHOW "type bench-process-large.tmp"
#define open_pipe(command) _popen(command, "rb")
#define close_pipe _pclose
#else
#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>
#define make_directory(path) mkdir(path, 0700)
#define remove_directory(path) rmdir(path)
#define status_of(path, to) stat(path, (struct stat *)(to))
#define NOTHING "exit 0"
#define SHOW "cat bench-process-large.tmp"
FILE *popen(const char *, const char *);
int pclose(FILE *);
#define open_pipe(command) popen(command, "r")
#define close_pipe pclose
#endif

enum { ENTRIES = 2000, KIBIBYTES = 64 };
static char status[256];

static void read_directory(void)
{
    DIR *dir = opendir("bench-process");
    int count = 0;
    while (readdir(dir)) ++count;
    closedir(dir);
    bench_keep(count);
}

static void open_and_close(void) { fclose(fopen("bench-process-0.tmp", "rb")); }

static void read_command(void)
{
    static char block[65536];
    size_t total = 0, count;
    FILE *pipe = open_pipe(SHOW);
    while ((count = fread(block, 1, sizeof block, pipe)) != 0) total += count;
    close_pipe(pipe);
    bench_keep(total);
}

static void entry_name(char *name, int i) { sprintf(name, "bench-process/%d.tmp", i); }

int main(void)
{
    char name[40];
    FILE *file = fopen("bench-process-0.tmp", "wb");
    for (int i = 0; i < 100000; ++i) putc(i, file);
    fclose(file);
    BENCH("getenv", 1, bench_keep(getenv("PATH")));
    BENCH("stat", 1, bench_keep(status_of("bench-process-0.tmp", status)));
    BENCH("fopen and fclose", 1, open_and_close());
    file = fopen("bench-process-0.tmp", "rb");
    getc(file);
    BENCH("ftell while reading", 1, bench_keep(ftell(file)));
    fclose(file);
    remove("bench-process-0.tmp");
    make_directory("bench-process");
    for (int i = 0; i < ENTRIES; ++i) {
        entry_name(name, i);
        fclose(fopen(name, "wb"));
    }
    BENCH("readdir of 2,000, per entry", ENTRIES, read_directory());
    for (int i = 0; i < ENTRIES; ++i) {
        entry_name(name, i);
        remove(name);
    }
    remove_directory("bench-process");
#if defined(__VEXRT__) || !defined(_WIN32)
    char *text;
    size_t size;
    file = open_memstream(&text, &size);
    BENCH("fprintf to a memory stream", 1, fprintf(file, "%d\n", 12345), size > 1000000 ? rewind(file) : (void)0);
    fclose(file);
    free(text);
#else
    BENCH_SKIP("fprintf to a memory stream");
#endif
    BENCH("system of nothing", 1, bench_keep(system(NOTHING)));
    file = fopen("bench-process-large.tmp", "wb");
    for (int i = 0; i < KIBIBYTES << 10; ++i) putc('a' + i % 26, file);
    fclose(file);
    BENCH("popen and read 64 KiB, per KiB", KIBIBYTES, read_command());
    remove("bench-process-large.tmp");
    return 0;
}
