/*
 * listdir: lists a directory with modes, sizes and times.
 *
 *   listdir [DIRECTORY]
 */
#include <dirent.h>
#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <time.h>

static int by_name(const void *a, const void *b)
{
    return strcmp(*(char *const *)a, *(char *const *)b);
}

static void print_entry(const char *directory, const char *name)
{
    static const char letters[] = "rwxrwxrwx";
    char path[600], mode[11] = "-", when[20];
    struct stat64 status;
    snprintf(path, sizeof path, "%s/%s", directory, name);
    if (_stat64(path, &status) != 0) {
        printf("%-10s %12s %-16s %s\n", "?", "", strerror(errno), name);
        return;
    }
    if (S_ISDIR(status.st_mode)) mode[0] = 'd';
    for (int i = 0; i < 9; ++i) mode[i + 1] = status.st_mode >> (8 - i) & 1 ? letters[i] : '-';
    strftime(when, sizeof when, "%Y-%m-%d %H:%M", localtime(&status.st_mtime));
    printf("%s %12lld %s %s\n", mode, status.st_size, when, name);
}

int main(int argc, char **argv)
{
    const char *directory = argc > 1 ? argv[1] : ".";
    DIR *stream = _opendir(directory);
    char **names = NULL;
    size_t count = 0;
    if (!stream) {
        fprintf(stderr, "listdir: %s: %s\n", directory, strerror(errno));
        return 1;
    }
    for (struct dirent *entry; (entry = _readdir(stream)) != NULL;) {
        char **grown = realloc(names, (count + 1) * sizeof *names);
        char *name = malloc(strlen(entry->d_name) + 1);
        if (!grown || !name) {
            fprintf(stderr, "listdir: out of memory\n");
            return 1;
        }
        names = grown;
        names[count++] = strcpy(name, entry->d_name);
    }
    _closedir(stream);
    qsort(names, count, sizeof *names, by_name);
    for (size_t i = 0; i < count; ++i) {
        print_entry(directory, names[i]);
        free(names[i]);
    }
    free(names);
    return 0;
}
