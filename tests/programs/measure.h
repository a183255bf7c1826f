/* The functions of standard input, measured one after the other. */
#include "points.h"

#include <fcntl.h>
#include <io.h>

/* `measure` reads the points of one and says whether its errors are within the bound. The exit status. */
static int measure_functions(int (*measure)(const struct header *))
{
    struct header h;
    int functions_read = 0, failed = 0;
    _setmode(0, O_BINARY);
    while (fread(&h, sizeof h, 1, stdin) == 1) {
        failed += !measure(&h);
        ++functions_read;
    }
    printf("%d passed, %d failed\n", functions_read - failed, failed);
    return failed || !functions_read;
}
