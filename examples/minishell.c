/*
 * minishell: reads commands from standard input and runs them.
 *
 *   cd DIRECTORY         changes the directory
 *   set NAME=VALUE       sets a variable
 *   exit [STATUS]        ends the shell
 *   NAME ARGUMENT...     runs a program, found along PATH, and tells a status that is not 0
 *   NAME ... | count     runs a program and counts the lines and bytes that it writes
 */
#include <direct.h>
#include <errno.h>
#include <io.h>
#include <process.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { ARGUMENT_LIMIT = 64 };

static int change_directory(const char *path)
{
    if (path && _chdir(path) == 0) return 0;
    fprintf(stderr, "cd: %s: %s\n", path ? path : "", strerror(errno));
    return 1;
}

static int count_output(const char *command)
{
    unsigned long lines = 0, bytes = 0;
    FILE *output = _popen(command, "r");
    if (!output) {
        fprintf(stderr, "%s: cannot be started\n", command);
        return 127;
    }
    for (int c; (c = getc(output)) != EOF; ++bytes) lines += c == '\n';
    printf("%lu lines, %lu bytes\n", lines, bytes);
    return _pclose(output);
}

static int run(char *line)
{
    char *arguments[ARGUMENT_LIMIT], *pipe = strstr(line, "| count"), *state;
    rsize_t left = strlen(line) + 1;
    int count = 0;
    if (pipe) {
        *pipe = '\0';
        return count_output(line);
    }
    for (char *word = strtok_s(line, &left, " \t", &state); word && count < ARGUMENT_LIMIT - 1;
         word = strtok_s(NULL, &left, " \t", &state))
        arguments[count++] = word;
    arguments[count] = NULL;
    if (count == 0) return 0;
    if (!strcmp(arguments[0], "cd")) return change_directory(arguments[1]);
    if (!strcmp(arguments[0], "set")) return count > 1 && _putenv(arguments[1]) == 0 ? 0 : 1;
    if (!strcmp(arguments[0], "exit")) exit(count > 1 ? atoi(arguments[1]) : 0);
    fflush(stdout);
    int status = (int)_spawnvp(_P_WAIT, arguments[0], arguments);
    if (status == -1) {
        fprintf(stderr, "%s: %s\n", arguments[0], strerror(errno));
        return 127;
    }
    return status;
}

int main(void)
{
    char line[1024];
    int interactive = _isatty(0), status = 0;
    for (;;) {
        if (interactive) printf("> ");
        if (!fgets(line, sizeof line, stdin)) return status;
        line[strcspn(line, "\r\n")] = '\0';
        status = run(line);
        if (status) printf("status %d\n", status);
    }
}
