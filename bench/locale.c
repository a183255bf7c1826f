/* Characters, multibyte conversion, wide files, collation. */
#include "bench.h"

#include <ctype.h>
#include <locale.h>
#include <stdlib.h>
#include <string.h>
#include <wchar.h>
#include <wctype.h>

enum { SIZE = 1 << 16, WORDS = 1000 };
static char text[SIZE + 1], back[SIZE + 1];
static wchar_t wide[SIZE + 1];
static char *words[WORDS], *sorted[WORDS];

static int compare(const void *a, const void *b)
{
    return strcoll(*(char *const *)a, *(char *const *)b);
}

static void loop_mbrtowc(void)
{
    mbstate_t state;
    wchar_t wc;
    memset(&state, 0, sizeof state);
    for (int i = 0; i < 1000; ++i) mbrtowc(&wc, text + i, 1, &state);
}

static void loop_classes(void)
{
    int count = 0;
    for (int i = 0; i < 1000; ++i) count += isalpha((unsigned char)text[i]) + toupper((unsigned char)text[i]);
    bench_keep(count);
}

static void loop_wide_classes(void)
{
    int count = 0;
    for (int i = 0; i < 1000; ++i) count += iswalpha(wide[i]) + (int)towupper(wide[i]);
    bench_keep(count);
}

static void wide_file(const char *mode, int lines)
{
    static wchar_t line[200];
    FILE *file = fopen("bench-locale.tmp", mode);
    if (!file) return;
    for (int i = 0; i < lines; ++i) {
        if (*mode == 'w') fputws(L"a line of some forty wide characters....\n", file);
        else if (!fgetws(line, 200, file)) break;
    }
    fclose(file);
}

int main(void)
{
    for (int i = 0; i < SIZE; ++i) text[i] = "The quick brown fox jumps over the lazy dog. "[i % 45];
    BENCH("mbstowcs, per character", SIZE, bench_keep(mbstowcs(wide, text, SIZE + 1)));
    BENCH("wcstombs, per character", SIZE, bench_keep(wcstombs(back, wide, SIZE + 1)));
    BENCH("mbrtowc", 1000, loop_mbrtowc());
    BENCH("isalpha and toupper", 1000, loop_classes());
    BENCH("iswalpha and towupper", 1000, loop_wide_classes());
    wide_file("w", 1);
    BENCH("fputws, line of 41", 1000, wide_file("w", 1000));
    BENCH("fgetws, line of 41", 1000, wide_file("r", 1000));
    for (int i = 0; i < WORDS; ++i) {
        words[i] = malloc(12);
        for (int k = 0; k < 11; ++k) words[i][k] = (char)('a' + (i * 7919 + k * k * 31 + i / (k + 1)) % 26);
        words[i][11] = '\0';
    }
    BENCH("sort of 1000 words by strcoll", 1000,
          (memcpy(sorted, words, sizeof words), qsort(sorted, WORDS, sizeof *sorted, compare)));
    if (setlocale(LC_ALL, "DE") || setlocale(LC_ALL, "German_Germany.1252")) {
        BENCH("mbstowcs in German, per character", SIZE, bench_keep(mbstowcs(wide, text, SIZE + 1)));
        BENCH("wcstombs in German, per character", SIZE, bench_keep(wcstombs(back, wide, SIZE + 1)));
        BENCH("sort of 1000 words in German", 1000,
              (memcpy(sorted, words, sizeof words), qsort(sorted, WORDS, sizeof *sorted, compare)));
    } else {
        BENCH_SKIP("mbstowcs in German, per character");
        BENCH_SKIP("wcstombs in German, per character");
        BENCH_SKIP("sort of 1000 words in German");
    }
    setlocale(LC_ALL, "C");

    return 0;
}
