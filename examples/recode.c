/*
 * recode: converts a text file from one encoding to another.
 *
 *   recode FROM INPUT TO OUTPUT
 *
 * FROM and TO are UTF-8, UTF-16LE, or a country code such as DE or JP for the code page that is used
 * there. Line ends become those of Windows; a Unicode output begins with a byte-order mark. Characters
 * that the output cannot hold end the program with status 1.
 */
#include <errno.h>
#include <fcntl.h>
#include <io.h>
#include <locale.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <wchar.h>

struct side {
    const char *encoding, *path;
    int mode; /* of the descriptor */
    FILE *file;
};

static void fail(const char *what, const char *why)
{
    fprintf(stderr, "recode: %s: %s\n", what, why);
    exit(1);
}

/* A Unicode encoding is the stream's business, a code page that of the locale. */
static void use(const struct side *side)
{
    if (side->mode == O_TEXT && !setlocale(LC_CTYPE, side->encoding)) fail(side->encoding, "unknown encoding");
}

static void open_side(struct side *side, const char *access)
{
    char mode[32];
    side->mode = !strcmp(side->encoding, "UTF-8") ? O_U8TEXT : !strcmp(side->encoding, "UTF-16LE") ? O_U16TEXT : O_TEXT;
    use(side);
    sprintf(mode, side->mode == O_TEXT ? "%s" : "%s,ccs=%s", access, side->encoding);
    side->file = fopen(side->path, mode);
    if (!side->file) fail(side->path, strerror(errno));
    _setmode(_fileno(side->file), side->mode); /* an input without a mark, too */
}

int main(int argc, char **argv)
{
    if (argc != 5) {
        fprintf(stderr, "usage: recode FROM INPUT TO OUTPUT\n");
        return 2;
    }
    struct side from = {argv[1], argv[2], 0, NULL}, to = {argv[3], argv[4], 0, NULL};
    open_side(&from, "r");
    open_side(&to, "w");
    wchar_t *line = NULL;
    size_t capacity = 0;
    for (;;) {
        use(&from);
        if (getwline(&line, &capacity, from.file) < 0) break;
        use(&to);
        if (fputws(line, to.file) == EOF) fail(to.path, strerror(errno));
    }
    if (ferror(from.file)) fail(from.path, strerror(errno));
    if (fclose(to.file)) fail(to.path, strerror(errno));
    free(line);
    return 0;
}
