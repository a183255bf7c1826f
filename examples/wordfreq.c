/*
 * wordfreq - counts the words of a file or of standard input and prints the most frequent ones.
 *
 *   wordfreq [-n COUNT] [-i] [FILE]
 *
 *   -n COUNT   how many words to print (20; 0: all)
 *   -i         upper and lower case are the same word
 *
 * A word is a run of letters, digits and apostrophes that begins with a letter or digit. Words of
 * the same count are printed in byte order.
 */
#include <ctype.h>
#include <errno.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

struct word {
    struct word *next; /* in its bucket */
    unsigned count;
    char text[];
};

struct table {
    struct word **buckets;
    size_t bucket_count; /* a power of two */
    size_t word_count;
    unsigned long long total;
};

static void fail(const char *what)
{
    perror(what);
    exit(EXIT_FAILURE);
}

static void *need(void *block)
{
    if (!block) fail("wordfreq");
    return block;
}

static unsigned hash(const char *text)
{
    unsigned value = 2166136261u; /* FNV-1a */
    for (; *text; ++text) value = (value ^ (unsigned char)*text) * 16777619u;
    return value;
}

static void grow(struct table *table)
{
    size_t count = table->bucket_count ? 2 * table->bucket_count : 1024;
    struct word **buckets = need(calloc(count, sizeof *buckets));
    for (size_t i = 0; i < table->bucket_count; ++i) {
        for (struct word *word = table->buckets[i], *next; word; word = next) {
            struct word **bucket = &buckets[hash(word->text) & (count - 1)];
            next = word->next;
            word->next = *bucket;
            *bucket = word;
        }
    }
    free(table->buckets);
    table->buckets = buckets;
    table->bucket_count = count;
}

static void count_word(struct table *table, const char *text)
{
    if (table->word_count >= table->bucket_count) grow(table);
    struct word **bucket = &table->buckets[hash(text) & (table->bucket_count - 1)];
    struct word *word = *bucket;
    while (word && strcmp(word->text, text) != 0) word = word->next;
    if (!word) {
        size_t size = strlen(text) + 1;
        word = need(malloc(sizeof *word + size));
        memcpy(word->text, text, size);
        word->count = 0;
        word->next = *bucket;
        *bucket = word;
        ++table->word_count;
    }
    ++word->count;
    ++table->total;
}

/* Reads the next word into a block that grows as needed; false at the end. */
static int read_word(FILE *input, int ignore_case, char **text, size_t *capacity)
{
    size_t length = 0;
    int c;
    do c = getc(input);
    while (c != EOF && !isalnum(c));
    for (; c != EOF && (isalnum(c) || c == '\''); c = getc(input)) {
        if (length + 2 > *capacity) {
            *capacity = *capacity ? 2 * *capacity : 64;
            *text = need(realloc(*text, *capacity));
        }
        (*text)[length++] = (char)(ignore_case ? tolower(c) : c);
    }
    if (length == 0) return 0;
    (*text)[length] = '\0';
    return 1;
}

static int by_count(const void *a, const void *b)
{
    const struct word *x = *(struct word *const *)a, *y = *(struct word *const *)b;
    if (x->count != y->count) return x->count < y->count ? 1 : -1;
    return strcmp(x->text, y->text);
}

static void print_table(const struct table *table, size_t limit)
{
    struct word **words = need(malloc((table->word_count + 1) * sizeof *words));
    size_t count = 0;
    for (size_t i = 0; i < table->bucket_count; ++i)
        for (struct word *word = table->buckets[i]; word; word = word->next) words[count++] = word;
    qsort(words, count, sizeof *words, by_count);

    printf("%8s  %s\n", "count", "word");
    if (limit == 0 || limit > count) limit = count;
    for (size_t i = 0; i < limit; ++i) printf("%8u  %s\n", words[i]->count, words[i]->text);
    printf("%zu different words, %llu in all\n", count, table->total);
    free(words);
}

static int usage(void)
{
    fputs("usage: wordfreq [-n COUNT] [-i] [FILE]\n", stderr);
    return 2;
}

/* A decimal number of at most INT_MAX; false for anything else. */
static int parse_count(const char *text, size_t *value)
{
    size_t result = 0;
    if (!*text) return 0;
    for (; *text; ++text) {
        if (!isdigit((unsigned char)*text)) return 0;
        result = 10 * result + (size_t)(*text - '0');
        if (result > INT_MAX) return 0;
    }
    *value = result;
    return 1;
}

int main(int argc, char **argv)
{
    struct table table = {0};
    size_t limit = 20, capacity = 0;
    char *text = NULL;
    int ignore_case = 0, i;
    for (i = 1; i < argc && argv[i][0] == '-' && argv[i][1]; ++i) {
        if (strcmp(argv[i], "-i") == 0) ignore_case = 1;
        else if (strcmp(argv[i], "-n") != 0 || ++i == argc || !parse_count(argv[i], &limit))
            return usage();
    }
    if (argc - i > 1) return usage();

    FILE *input = stdin;
    if (i < argc && strcmp(argv[i], "-") != 0) {
        input = fopen(argv[i], "r");
        if (!input) fail(argv[i]);
    }
    setvbuf(input, NULL, _IOFBF, 32768);
    setvbuf(stdout, NULL, _IOFBF, 8192);
    while (read_word(input, ignore_case, &text, &capacity)) count_word(&table, text);
    if (ferror(input)) fail("wordfreq: reading");
    print_table(&table, limit);
    if (fflush(stdout) != 0) fail("wordfreq: writing");
    return EXIT_SUCCESS;
}
