/*
 * filesizes: the sizes of files whose names may be of any script. The names come as UTF-16, the output is
 * UTF-8.
 *
 *   filesizes FILE...
 */
#include <errno.h>
#include <fcntl.h>
#include <io.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <wchar.h>

int wmain(int argc, wchar_t **argv)
{
    long long total = 0;
    int failures = 0;
    _setmode(1, O_U8TEXT);
    _setmode(2, O_U8TEXT);
    for (int i = 1; i < argc; ++i) {
        struct stat64 status;
        if (_wstat64(argv[i], &status) != 0) {
            fwprintf(stderr, L"%ls: %hs\n", argv[i], strerror(errno));
            ++failures;
            continue;
        }
        wprintf(L"%10lld %ls (%zu units)\n", status.st_size, argv[i], wcslen(argv[i]));
        total += status.st_size;
    }
    wprintf(L"%10lld in all\n", total);
    return failures != 0;
}
