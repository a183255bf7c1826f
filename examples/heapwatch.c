/*
 * heapwatch: how to find a leak with _msize() and an overrun with __heap_validate().
 *
 *   heapwatch leak|overrun|sound
 */
#include <malloc.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static size_t in_use;

static void *counted_malloc(size_t size)
{
    void *block = malloc(size);
    if (block) in_use += _msize(block);
    return block;
}

static void counted_free(void *block)
{
    if (block) in_use -= _msize(block);
    free(block);
}

/* A round of work: a list of texts. One that leaks forgets the last, one that overruns writes too much. */
static void work(int leaks, int overruns)
{
    char *texts[8];
    for (int i = 0; i < 8; ++i) {
        texts[i] = counted_malloc(24);
        if (!texts[i]) exit(1);
        snprintf(texts[i], 24, "text %d", i);
    }
    if (overruns) memset(texts[3], 'x', _msize(texts[3]) + 4);
    printf("heap: %s\n", __heap_validate(NULL) ? "sound" : "overwritten");
    if (overruns) {
        for (int i = 0; i < 8; ++i)
            if (!__heap_validate(texts[i])) printf("at the block of '%.8s'\n", texts[i]);
        fflush(stdout);
        _Exit(3); /* a broken heap is not to be used any more */
    }
    for (int i = 0; i < 8 - leaks; ++i) counted_free(texts[i]);
}

int main(int argc, char **argv)
{
    const char *kind = argc > 1 ? argv[1] : "sound";
    size_t before;
    work(0, 0);
    before = in_use;
    work(!strcmp(kind, "leak"), !strcmp(kind, "overrun"));
    printf("leaked: %s\n", in_use > before ? "yes" : "no");
    return in_use != before;
}
