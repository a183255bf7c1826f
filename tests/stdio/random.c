/*
 * Random operations on one update stream against a model of the file in memory: data, positions,
 * counts and the end-of-file indicator, for several buffer sizes, binary and text.
 */
#include "check.h"

#include <stdlib.h>

__declspec(dllimport) int __stdcall DeleteFileA(const char *path);

#define NAME "random.tmp"
enum { limit = 60000, operations = 6000 };

static FILE *file;
static unsigned char model[limit];
static long length, position;
static int pushed; /* bytes pushed back, at most one here */
static int text;   /* newlines take two bytes of the file; only its end is written */

static long offset_of(long index)
{
    long offset = index;
    for (long i = 0; text && i < index; ++i) offset += model[i] == '\n';
    return offset;
}


static unsigned state;
static unsigned next(unsigned below)
{
    state = state * 1664525 + 1013904223;
    return (unsigned)((unsigned long long)(state >> 8) * below >> 24);
}

/* Mostly small, sometimes several buffers long. */
static size_t next_size(void)
{
    static const unsigned below[] = {4, 100, 600, 5000};
    return 1 + next(below[next(4)]);
}

static enum { idle, reading, writing } last;

static void turn_to(int direction)
{
    if (last != idle && last != direction) {
        CHECK_INT(next(2) || last == reading ? fseek(file, 0, SEEK_CUR) : fflush(file), 0);
        pushed = 0;
    }
    last = direction;
}

static void write_some(void)
{
    static unsigned char bytes[5000];
    size_t size = next_size();
    if (position + (long)size > limit || (text && position < length)) return;
    turn_to(writing);
    for (size_t i = 0; i < size; ++i)
        bytes[i] = model[position + (long)i] = (unsigned char)(text ? "abc\n"[next(4)] : next(256));
    if (size == 1 && next(2)) CHECK_INT(putc(bytes[0], file), bytes[0]);
    else CHECK_INT(fwrite(bytes, 1, size, file), size);
    position += (long)size;
    if (position > length) length = position;
}

static void read_some(void)
{
    static unsigned char bytes[5000];
    size_t size = next_size();
    long due = length - position < 0 ? 0 : length - position;
    if (due > (long)size) due = (long)size;
    turn_to(reading);
    if (size == 1 && next(2)) {
        int c = getc(file);
        CHECK_INT(c, due ? model[position] : EOF);
    } else {
        CHECK_INT(fread(bytes, 1, size, file), due);
        CHECK(memcmp(bytes, model + position, (size_t)due) == 0);
    }
    CHECK_INT(feof(file) != 0, due < (long)size);
    position += due;
    pushed = 0;
}

static void move(void)
{
    static const int origins[] = {SEEK_SET, SEEK_CUR, SEEK_END};
    int origin = text ? SEEK_SET : origins[next(3)];
    long target = next(3) ? (long)next((unsigned)length + 1) : length;
    long offset = origin == SEEK_SET ? offset_of(target) : target - (origin == SEEK_CUR ? position : length);
    CHECK_INT(fseek(file, offset, origin), 0);
    position = target;
    last = idle;
    pushed = 0;
    CHECK(!feof(file));
}

static void push_back(void)
{
    if (last != reading || pushed || position == 0) return;
    --position;
    CHECK_INT(ungetc(model[position], file), model[position]);
    pushed = 1;
}

static void run(unsigned seed, size_t buffer)
{
    int failed = check_failed;
    char label[32];
    snprintf(label, sizeof label, "seed %u, buffer %zu", seed, buffer);
    check_label = label;
    text = seed % 2;
    state = seed;
    length = position = 0;
    last = idle;
    pushed = 0;
    file = fopen(NAME, text ? "w+" : "wb+");
    if (buffer) setvbuf(file, NULL, _IOFBF, buffer);
    for (int i = 0; i < operations && check_failed == failed; ++i) {
        switch (next(6)) {
        case 0:
        case 1: write_some(); break;
        case 2:
        case 3: read_some(); break;
        case 4: move(); break;
        default: push_back();
        }
        if (next(3) == 0) CHECK_INT(ftell(file), offset_of(position));
    }
    fclose(file);
    file = fopen(NAME, text ? "r" : "rb");
    static unsigned char all[limit + 1];
    CHECK_INT(fread(all, 1, sizeof all, file), length);
    CHECK(memcmp(all, model, (size_t)length) == 0);
    fclose(file);
}

int main(void)
{
    static const size_t buffers[] = {0, 1, 7, 512, 4096};
    for (unsigned i = 0; i < 20; ++i) run(1 + i, buffers[i / 2 % 5]);
    DeleteFileA(NAME);
    return check_done();
}
