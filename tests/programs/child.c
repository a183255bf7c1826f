/* A child for the tests of processes: child ACTION... */
#include <fcntl.h>
#include <io.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

__declspec(dllimport) unsigned long __stdcall GetEnvironmentVariableA(const char *name, char *to, unsigned long size);

int main(int argc, char **argv)
{
    const char *action = argc > 1 ? argv[1] : "";
    if (!strcmp(action, "exit")) return atoi(argv[2]);
    if (!strcmp(action, "arguments")) {
        for (int i = 0; i < argc; ++i) printf("[%s]", argv[i]);
        return 0;
    }
    if (!strcmp(action, "variable")) {
        const char *value = getenv(argv[2]);
        printf("%s", value ? value : "(none)");
        return 0;
    }
    if (!strcmp(action, "drive")) { /* entries that only the system knows */
        char value[300];
        return GetEnvironmentVariableA(argv[2], value, sizeof value) ? printf("%s", value) < 0 : 1;
    }
    if (!strcmp(action, "descriptor")) { /* writes to one that it should have, and tells its mode */
        int fd = atoi(argv[2]), written = _write(fd, "a\n", 2);
        return written == 2 ? _setmode(fd, O_TEXT) == O_TEXT ? 1 : 2 : 3;
    }
    if (!strcmp(action, "copy")) { /* standard input to standard output in capitals */
        for (int c; (c = getchar()) != EOF;) putchar(c >= 'a' && c <= 'z' ? c - 32 : c);
        return 7;
    }
    if (!strcmp(action, "fill")) { /* many bytes */
        static char block[65536];
        _setmode(1, O_BINARY);
        for (long left = atol(argv[2]); left > 0; left -= (long)sizeof block)
            _write(1, block, (unsigned)(left < (long)sizeof block ? left : (long)sizeof block));
        return 0;
    }
    return 99;
}
