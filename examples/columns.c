/*
 * columns: statistics of columns of numbers.
 *
 *   columns [FILE]      a file, else standard input
 *
 * Each line holds numbers between white space; what stands behind a line's last number is ignored, and
 * so are lines without any. Prints for each column the count, least, greatest, mean and standard
 * deviation (by Welford's method, which loses no digits to large sums).
 */
#include <errno.h>
#include <math.h>
#include <stdio.h>
#include <string.h>

enum { COLUMN_LIMIT = 64 };

struct column {
    unsigned long count;
    double least, greatest, mean, squares;
};

static void add(struct column *column, double value)
{
    double before = value - column->mean;
    if (column->count++ == 0) column->least = column->greatest = value;
    if (value < column->least) column->least = value;
    if (value > column->greatest) column->greatest = value;
    column->mean += before / (double)column->count;
    column->squares += before * (value - column->mean);
}

static void add_line(const char *line, struct column *columns, unsigned *used)
{
    double value;
    int length;
    for (unsigned i = 0; i < COLUMN_LIMIT && sscanf(line, "%lf%n", &value, &length) == 1; ++i) {
        add(&columns[i], value);
        line += length;
        if (i == *used) ++*used;
    }
}

int main(int argc, char **argv)
{
    static struct column columns[COLUMN_LIMIT];
    static char line[8192];
    unsigned used = 0, i;
    FILE *input = argc > 1 ? fopen(argv[1], "r") : stdin;
    if (!input) {
        fprintf(stderr, "columns: %s: %s\n", argv[1], strerror(errno));
        return 1;
    }
    while (fgets(line, sizeof line, input)) add_line(line, columns, &used);
    printf("%6s %8s %14s %14s %14s %14s\n", "column", "count", "least", "greatest", "mean", "deviation");
    for (i = 0; i < used; ++i)
        printf("%6u %8lu %14.6g %14.6g %14.6g %14.6g\n", i + 1, columns[i].count, columns[i].least,
               columns[i].greatest, columns[i].mean,
               columns[i].count > 1 ? sqrt(columns[i].squares / (double)(columns[i].count - 1)) : 0.0);
    return 0;
}
