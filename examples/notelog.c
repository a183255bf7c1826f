/*
 * notelog: adds a line to a log file. A program for the desktop: no console, WinMain as its start, what it
 * has to say goes to the log and the exit status.
 *
 *   notelog FILE TEXT...
 */
#include <stdio.h>
#include <string.h>

int __stdcall WinMain(void *instance, void *previous, char *line, int show)
{
    char *name = line;
    char *text = strchr(line, ' ');
    FILE *log;
    long lines = 1;
    (void)instance, (void)previous, (void)show;
    if (!text) return 2;
    *text++ = '\0';

    log = fopen(name, "a+");
    if (!log) return 1;
    rewind(log);
    for (int c; (c = getc(log)) != EOF;) lines += c == '\n';
    fseek(log, 0, SEEK_END);
    fprintf(log, "%03ld %s\n", lines, text);
    return fclose(log) != 0;
}
