/*
 * parallel_wordfreq - counts the words of many files at once and prints the most frequent ones.
 *
 *   parallel_wordfreq [-j THREADS] [-n COUNT] [FILE...]
 *
 *   -j THREADS   how many threads read (4)
 *   -n COUNT     how many words to print (20; 0: all)
 *
 * Without files the names are read from standard input, one a line. The main thread puts names into a
 * queue of bounded length, and the pool takes them out. Every thread counts into a table of its own, kept
 * in thread-specific storage; its destructor adds the table to the common one when the thread ends.
 */
#include <ctype.h>
#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <threads.h>

/* ---- a queue of names ---- */

enum { queue_room = 16, most_threads = 64 };

struct queue {
    mtx_t mutex;
    cnd_t not_empty, not_full;
    char *names[queue_room];
    unsigned first, count;
    int closed; /* nothing more will come */
};

static void fail(const char *what)
{
    perror(what);
    exit(EXIT_FAILURE);
}

static void *need(void *block)
{
    if (!block) fail("parallel_wordfreq");
    return block;
}

static void need_success(int result)
{
    if (result == thrd_success) return;
    fputs("parallel_wordfreq: no threads to be had\n", stderr);
    exit(EXIT_FAILURE);
}

static void put_name(struct queue *queue, const char *name)
{
    char *copy = need(strdup(name));
    mtx_lock(&queue->mutex);
    while (queue->count == queue_room) cnd_wait(&queue->not_full, &queue->mutex);
    queue->names[(queue->first + queue->count++) % queue_room] = copy;
    mtx_unlock(&queue->mutex);
    cnd_signal(&queue->not_empty);
}

static void close_queue(struct queue *queue)
{
    mtx_lock(&queue->mutex);
    queue->closed = 1;
    mtx_unlock(&queue->mutex);
    cnd_broadcast(&queue->not_empty);
}

/* The next name, which is then the caller's; null at the end. */
static char *take_name(struct queue *queue)
{
    char *name = NULL;
    mtx_lock(&queue->mutex);
    while (queue->count == 0 && !queue->closed) cnd_wait(&queue->not_empty, &queue->mutex);
    if (queue->count) {
        name = queue->names[queue->first];
        queue->first = (queue->first + 1) % queue_room;
        --queue->count;
    }
    mtx_unlock(&queue->mutex);
    if (name) cnd_signal(&queue->not_full);
    return name;
}

/* ---- tables of words ---- */

enum { bucket_count = 4096 };

struct word {
    struct word *next;
    unsigned count;
    char text[];
};

struct table {
    struct word *buckets[bucket_count];
    size_t word_count;
};

static struct word *find_word(struct table *table, const char *text)
{
    unsigned hash = 2166136261u; /* FNV-1a */
    for (const char *c = text; *c; ++c) hash = (hash ^ (unsigned char)*c) * 16777619u;
    struct word **bucket = &table->buckets[hash % bucket_count], *word;
    for (word = *bucket; word; word = word->next)
        if (strcmp(word->text, text) == 0) return word;
    size_t size = strlen(text) + 1;
    word = need(malloc(sizeof *word + size));
    memcpy(word->text, text, size);
    word->count = 0;
    word->next = *bucket;
    *bucket = word;
    ++table->word_count;
    return word;
}

static void count_file(struct table *table, const char *name)
{
    char text[64];
    size_t length = 0;
    FILE *input = fopen(name, "r");
    if (!input) {
        perror(name);
        return;
    }
    setvbuf(input, NULL, _IOFBF, 32768);
    for (int c = getc(input);; c = getc(input)) {
        if (c != EOF && (isalnum(c) || (c == '\'' && length))) {
            if (length + 1 < sizeof text) text[length++] = (char)tolower(c); /* longer ones are cut */
            continue;
        }
        text[length] = '\0';
        if (length) ++find_word(table, text)->count;
        length = 0;
        if (c == EOF) break;
    }
    fclose(input);
}

/* ---- the pool ---- */

static struct queue names;
static struct table all_words;
static mtx_t all_words_mutex;
static tss_t own_table;

static void add_to_all(void *table_of_thread)
{
    struct table *table = table_of_thread;
    mtx_lock(&all_words_mutex);
    for (size_t i = 0; i < bucket_count; ++i) {
        for (struct word *word = table->buckets[i], *next; word; word = next) {
            next = word->next;
            find_word(&all_words, word->text)->count += word->count;
            free(word);
        }
    }
    mtx_unlock(&all_words_mutex);
    free(table);
}

static int count_files(void *unused)
{
    (void)unused;
    struct table *table = need(calloc(1, sizeof *table));
    need_success(tss_set(own_table, table));
    for (char *name; (name = take_name(&names)) != NULL; free(name)) count_file(table, name);
    return 0;
}

/* ---- the result ---- */

static int by_count(const void *a, const void *b)
{
    const struct word *x = *(struct word *const *)a, *y = *(struct word *const *)b;
    if (x->count != y->count) return x->count < y->count ? 1 : -1;
    return strcmp(x->text, y->text);
}

static void print_words(size_t limit)
{
    struct word **words = need(malloc((all_words.word_count + 1) * sizeof *words));
    size_t count = 0;
    for (size_t i = 0; i < bucket_count; ++i)
        for (struct word *word = all_words.buckets[i]; word; word = word->next) words[count++] = word;
    qsort(words, count, sizeof *words, by_count);
    if (limit == 0 || limit > count) limit = count;
    for (size_t i = 0; i < limit; ++i) printf("%8u  %s\n", words[i]->count, words[i]->text);
    printf("%zu different words\n", count);
    free(words);
}

static void put_names_of(FILE *list)
{
    char name[1024];
    while (fgets(name, sizeof name, list)) {
        name[strcspn(name, "\n")] = '\0';
        if (*name) put_name(&names, name);
    }
}

int main(int argc, char **argv)
{
    thrd_t pool[most_threads];
    int threads = 4, limit = 20, i;
    for (i = 1; i + 1 < argc && argv[i][0] == '-'; i += 2) {
        if (argv[i][1] == 'j') threads = atoi(argv[i + 1]);
        else if (argv[i][1] == 'n') limit = atoi(argv[i + 1]);
        else break;
    }
    if (threads < 1 || threads > most_threads || limit < 0 || (i < argc && argv[i][0] == '-')) {
        fputs("usage: parallel_wordfreq [-j THREADS] [-n COUNT] [FILE...]\n", stderr);
        return 2;
    }

    need_success(mtx_init(&all_words_mutex, mtx_plain));
    need_success(mtx_init(&names.mutex, mtx_plain));
    need_success(cnd_init(&names.not_empty));
    need_success(cnd_init(&names.not_full));
    need_success(tss_create(&own_table, add_to_all));
    for (int k = 0; k < threads; ++k) need_success(thrd_create(&pool[k], count_files, NULL));
    if (i == argc) put_names_of(stdin);
    for (; i < argc; ++i) put_name(&names, argv[i]);
    close_queue(&names);
    for (int k = 0; k < threads; ++k) thrd_join(pool[k], NULL);
    print_words((size_t)limit);
    return EXIT_SUCCESS;
}
