/* options: -fno-builtin */
/*
 * __heap_validate finds what a program has overwritten, wherever in the small tier it is; every damage
 * is undone again. And free() refuses blocks whose tags are damaged.
 */
#include "check.h"

#include <malloc.h>
#include <stdlib.h>

static unsigned *first, *second, *third, *fourth;

/* Names a word and what to write over it. */
struct damage {
    const char *name;
    unsigned *word, value;
};

static void whole_heap(void)
{
    unsigned *freed = second, *large = fourth, *sentinel;
    for (sentinel = large - 1; !(*sentinel >> 31 && sentinel[-1] == large[-1]); ++sentinel) {}
    const struct damage damages[] = {
        {"header of a block in use", &first[-1], 0x80000001},
        {"header of size 0", &first[-1], 0x80000000},
        {"header that leaves the heap", &first[-1], 0xFFFFFFFF},
        {"header marked free", &first[-1], 12},
        {"footer of a block in use", &first[10], 'x'},
        {"header of a free block", &freed[-1], 13},
        {"footer of a free block", &freed[10], 13},
        {"next pointer", &freed[9], (unsigned)first},
        {"next pointer outside", &freed[9], 16},
        {"next pointer not aligned", &freed[9], freed[9] + 1},
        {"previous pointer", &freed[8], (unsigned)first},
        {"previous pointer outside", &freed[8], 0},
        {"end sentinel", sentinel, 0x80000003},
    };
    CHECK_INT(__heap_validate(NULL), 1);
    for (unsigned i = 0; i < sizeof damages / sizeof *damages; ++i) {
        check_label = damages[i].name;
        unsigned sound = *damages[i].word;
        *damages[i].word = damages[i].value;
        int result = __heap_validate(NULL);
        *damages[i].word = sound;
        CHECK_INT(result, 0);
    }
    check_label = "";
    CHECK_INT(__heap_validate(NULL), 1);
}

/* free and realloc leave a block alone whose tags do not match. */
static void refused(void)
{
    unsigned *const words[] = {&third[-1], &third[10]};
    const unsigned values[] = {0x8000000D, 0x80000000, 0xFFFFFFFF, 0x80000005, 12, 0};
    for (unsigned w = 0; w < 2; ++w)
        for (unsigned v = 0; v < sizeof values / sizeof *values; ++v) {
            unsigned sound = *words[w];
            *words[w] = values[v];
            CHECK_INT(__heap_validate(third), 0);
            CHECK_ERRNO((free(third), 0), 0, EINVAL);
            CHECK_ERRNO(realloc(third, 100), 0, EINVAL);
            CHECK_INT(_msize(third), 0);
            *words[w] = sound;
            CHECK_INT(__heap_validate(NULL), 1);
        }
    /* An overrun in the free block in front: merging with it would spread the damage. */
    unsigned footer = second[10];
    second[10] = 13;
    CHECK_ERRNO((free(third), 0), 0, EINVAL);
    second[10] = footer;
    CHECK_INT(__heap_validate((char *)third + 1), 0);
    CHECK_INT(__heap_validate(second), 0);
    CHECK_INT(__heap_validate(third), 1);
    CHECK_INT(_msize(third), 40);
}

static void system_tier(void)
{
    char *large = malloc(3000);
    CHECK_INT(__heap_validate(large), 1);
    CHECK_INT(__heap_validate(NULL), 1);
    void *underlying = ((void **)large)[-1];
    ((void **)large)[-1] = &underlying;
    CHECK_INT(__heap_validate(large), 0);
    CHECK_INT(_msize(large), 0);
    ((void **)large)[-1] = underlying;
    free(large);
}

int main(void)
{
    static void *holes[200];
    for (int i = 0; i < 200; ++i) holes[i] = malloc(40); /* blocks of 12 words in a row */
    first = holes[150];
    second = holes[151];
    third = holes[152];
    fourth = holes[199];
    free(second);
    whole_heap();
    refused();
    system_tier();
    return check_done();
}
