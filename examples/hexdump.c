/*
 * hexdump - prints a stretch of a file as hexadecimal numbers and as text.
 *
 *   hexdump FILE [OFFSET [LENGTH]]
 *
 * Shows binary streams, 64-bit positions and formatted output. A negative OFFSET counts from the
 * end of the file.
 */
#include <ctype.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { width = 16 };

static void print_line(long long position, const unsigned char *bytes, size_t count)
{
    char text[width + 1];
    printf("%08llx ", position);
    for (size_t i = 0; i < width; ++i) {
        if (i == width / 2) putchar(' ');
        if (i < count) printf(" %02x", bytes[i]);
        else fputs("   ", stdout);
    }
    for (size_t i = 0; i < count; ++i) text[i] = (char)(isprint(bytes[i]) ? bytes[i] : '.');
    text[count] = '\0';
    printf("  |%-*s|\n", width, text);
}

/* A decimal number with an optional sign; false for anything else. */
static int parse(const char *text, long long *value)
{
    int negative = *text == '-';
    *value = 0;
    if (negative) ++text;
    if (!*text) return 0;
    for (; isdigit((unsigned char)*text); ++text) *value = 10 * *value + (*text - '0');
    if (negative) *value = -*value;
    return !*text;
}

int main(int argc, char **argv)
{
    long long offset = 0, length = -1;
    if (argc < 2 || argc > 4 || (argc > 2 && !parse(argv[2], &offset)) ||
        (argc > 3 && !parse(argv[3], &length))) {
        fputs("usage: hexdump FILE [OFFSET [LENGTH]]\n", stderr);
        return 2;
    }
    FILE *file = fopen(argv[1], "rb");
    if (!file || _fseek64(file, offset, offset < 0 ? SEEK_END : SEEK_SET) != 0) {
        perror(argv[1]);
        return EXIT_FAILURE;
    }
    setvbuf(stdout, NULL, _IOFBF, 8192);
    long long position = _ftell64(file);
    unsigned char bytes[width];
    while (length != 0) {
        size_t wanted = length > 0 && length < width ? (size_t)length : width;
        size_t count = fread(bytes, 1, wanted, file);
        if (count == 0) break;
        print_line(position, bytes, count);
        position += (long long)count;
        if (length > 0) length -= (long long)count;
    }
    int failed = ferror(file);
    if (failed) perror(argv[1]);
    fclose(file);
    return failed ? EXIT_FAILURE : EXIT_SUCCESS;
}
