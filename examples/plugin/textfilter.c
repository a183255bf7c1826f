/*
 * textfilter: sends standard input through a filter that a DLL provides; see rot13.c for one.
 *
 *   textfilter LIBRARY
 */
#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>

int main(int argc, char **argv)
{
    void *library = _dlopen(argc > 1 ? argv[1] : "", RTLD_NOW);
    char *(*filter)(const char *);
    char *line = NULL;
    size_t size = 0;
    if (!library) {
        fprintf(stderr, "textfilter: %s\n", _dlerror());
        return EXIT_FAILURE;
    }
    filter = (char *(*)(const char *))_dlsym(library, "filter");
    if (!filter) {
        fprintf(stderr, "textfilter: %s\n", _dlerror());
        return EXIT_FAILURE;
    }
    while (getline(&line, &size, stdin) > 0) {
        char *text = filter(line);
        fputs(text, stdout);
        free(text); /* both use one heap: that of vexrt.dll */
    }
    free(line);
    return _dlclose(library);
}
