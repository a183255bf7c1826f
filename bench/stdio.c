/* Streams on a file in the current folder, which the runner makes and removes. */
#include "bench.h"

#include <string.h>

#define SIZE (1 << 20)
#define BLOCK (1 << 16)
#define LINE 64

static const char name[] = "bench-stdio.tmp";
static _Alignas(64) char block[BLOCK]; /* where compilers put it by themselves differs */

/* Zero leaves the buffer that the library chooses: 512 bytes here, 4096 elsewhere. */
static size_t buffer_size;

static FILE *open_file(const char *mode)
{
    FILE *file = fopen(name, mode);
    if (!file) BENCH_SKIP("cannot open the file");
    if (buffer_size) setvbuf(file, NULL, _IOFBF, buffer_size);
    return file;
}

static void put_bytes(void)
{
    FILE *file = open_file("wb");
    for (int i = 0; i < SIZE; ++i) putc('a' + i % 26, file);
    fclose(file);
}

static void get_bytes(void)
{
    FILE *file = open_file("rb");
    int c, sum = 0;
    while ((c = getc(file)) != EOF) sum += c;
    bench_keep(sum);
    fclose(file);
}

static void put_lines(const char *mode)
{
    static char line[LINE + 1];
    if (!*line) {
        memset(line, 'l', LINE);
        line[LINE - 1] = '\n';
    }
    FILE *file = open_file(mode);
    for (int i = 0; i < SIZE / LINE; ++i) fputs(line, file);
    fclose(file);
}

static void get_lines(const char *mode)
{
    char line[LINE * 2];
    FILE *file = open_file(mode);
    while (fgets(line, sizeof line, file)) bench_keep(line[0]);
    fclose(file);
}

static void write_blocks(void)
{
    FILE *file = open_file("wb");
    for (int i = 0; i < SIZE / BLOCK; ++i) fwrite(block, 1, BLOCK, file);
    fclose(file);
}

static void read_blocks(void)
{
    FILE *file = open_file("rb");
    while (fread(block, 1, BLOCK, file) == BLOCK) {}
    fclose(file);
}

static void read_small(void)
{
    char piece[24];
    FILE *file = open_file("rb");
    while (fread(piece, 1, sizeof piece, file) == sizeof piece) bench_keep(piece[0]);
    fclose(file);
}

int main(void)
{
    BENCH("putc, per byte", SIZE, put_bytes());
    BENCH("getc, per byte", SIZE, get_bytes());
    BENCH("fwrite 64 KiB, per KiB", SIZE / 1024, write_blocks());
    BENCH("fread 64 KiB, per KiB", SIZE / 1024, read_blocks());
    BENCH("fread 24 bytes, per call", SIZE / 24, read_small());
    BENCH("fputs, text line of 64", SIZE / LINE, put_lines("w"));
    BENCH("fgets, text line of 64", SIZE / LINE, get_lines("r"));
    BENCH("fputs, binary line of 64", SIZE / LINE, put_lines("wb"));
    BENCH("fgets, binary line of 64", SIZE / LINE, get_lines("rb"));
    BENCH("fopen + fclose", 1, fclose(open_file("rb")));
    buffer_size = 4096;
    BENCH("putc, 4 KiB buffer", SIZE, put_bytes());
    BENCH("getc, 4 KiB buffer", SIZE, get_bytes());
    BENCH("fread 24 bytes, 4 KiB buffer", SIZE / 24, read_small());
    BENCH("fputs, text, 4 KiB buffer", SIZE / LINE, put_lines("w"));
    BENCH("fgets, text, 4 KiB buffer", SIZE / LINE, get_lines("r"));
    BENCH("fputs, binary, 4 KiB buffer", SIZE / LINE, put_lines("wb"));
    BENCH("fgets, binary, 4 KiB buffer", SIZE / LINE, get_lines("rb"));
    return 0;
}
