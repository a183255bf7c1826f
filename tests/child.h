/*
 * child.h - runs a program, by default this test itself, as a child process.
 *
 *   int main(int argc, char **argv)
 *   {
 *       if (argc > 1) return child_main(argv[1]);       what the child does
 *       struct child child = child_run("overflow", NULL);
 *       CHECK_INT(child.status, 255);
 *       CHECK_STR(child.error, "CRT: out of memory -- terminating\r\n");
 *
 * `child_run(arguments, input)` starts this program with the arguments as they stand in a command
 * line and the text as its standard input (NULL: an empty one). `child_run_line` takes a whole command
 * line. What the child writes is kept up to CHILD_TEXT - 1 bytes a stream, ended by a zero; the lengths
 * count all that is kept.
 * A child that does not end in 30 seconds is ended; its status is CHILD_HUNG. One that cannot be
 * started has the status CHILD_NOT_STARTED.
 */
#ifndef CHILD_H
#define CHILD_H

#include <stddef.h>
#include <stdio.h>
#include <string.h>

#define CHILD_TEXT 65536
#define CHILD_HUNG (-1000)
#define CHILD_NOT_STARTED (-1001)

struct child {
    int status;
    char *output, *error;
    unsigned long output_length, error_length;
};

struct child_security {
    unsigned long size;
    void *descriptor;
    int inherit;
};

struct child_startup {
    unsigned long size;
    char *reserved, *desktop, *title;
    unsigned long x, y, width, height, columns, rows, fill, flags;
    unsigned short show, reserved_size;
    unsigned char *reserved_bytes;
    void *input, *output, *error;
};

struct child_process {
    void *process, *thread;
    unsigned long process_id, thread_id;
};

#define CHILD_IMPORT __declspec(dllimport)
CHILD_IMPORT int __stdcall CreateProcessA(const char *program, char *line, void *process_security,
                                          void *thread_security, int inherit, unsigned long flags,
                                          void *environment, const char *folder,
                                          struct child_startup *startup,
                                          struct child_process *process);
CHILD_IMPORT void *__stdcall CreateThread(void *security, size_t stack,
                                          unsigned long(__stdcall *start)(void *), void *argument,
                                          unsigned long flags, unsigned long *id);
CHILD_IMPORT int __stdcall CreatePipe(void **read, void **write, struct child_security *security,
                                      unsigned long size);
CHILD_IMPORT int __stdcall SetHandleInformation(void *handle, unsigned long mask,
                                                unsigned long flags);
CHILD_IMPORT int __stdcall ReadFile(void *file, void *to, unsigned long size, unsigned long *done,
                                    void *overlapped);
CHILD_IMPORT int __stdcall WriteFile(void *file, const void *from, unsigned long size,
                                     unsigned long *done, void *overlapped);
CHILD_IMPORT unsigned long __stdcall WaitForSingleObject(void *object, unsigned long milliseconds);
CHILD_IMPORT int __stdcall TerminateProcess(void *process, unsigned status);
CHILD_IMPORT int __stdcall GetExitCodeProcess(void *process, unsigned long *status);
CHILD_IMPORT int __stdcall CloseHandle(void *object);
CHILD_IMPORT unsigned long __stdcall GetModuleFileNameA(void *module, char *name,
                                                        unsigned long size);

/* One standard stream of the child: the end that it gets, the end that stays here, the text. */
struct child_stream {
    void *theirs, *ours;
    char *text;
    unsigned long length;
};

static void child_open(struct child_stream *stream, int child_reads)
{
    struct child_security security = {sizeof security, NULL, 1};
    if (child_reads) CreatePipe(&stream->theirs, &stream->ours, &security, 0);
    else CreatePipe(&stream->ours, &stream->theirs, &security, 0);
    SetHandleInformation(stream->ours, 1 /* HANDLE_FLAG_INHERIT */, 0);
}

/* Reads to the end, so that the child is never held up, and keeps what there is room for. */
static unsigned long __stdcall child_read(void *argument)
{
    struct child_stream *stream = argument;
    char piece[4096];
    unsigned long done;
    while (ReadFile(stream->ours, piece, sizeof piece, &done, NULL) && done > 0) {
        unsigned long room = CHILD_TEXT - 1 - stream->length;
        if (done > room) done = room;
        memcpy(stream->text + stream->length, piece, done);
        stream->length += done;
    }
    stream->text[stream->length] = '\0';
    CloseHandle(stream->ours);
    return 0;
}

static unsigned long __stdcall child_write(void *argument)
{
    struct child_stream *stream = argument;
    unsigned long done;
    if (stream->length > 0) WriteFile(stream->ours, stream->text, stream->length, &done, NULL);
    CloseHandle(stream->ours);
    return 0;
}

static int child_wait(struct child_process *process)
{
    unsigned long status;
    if (WaitForSingleObject(process->process, 30000) != 0) {
        TerminateProcess(process->process, 1);
        return CHILD_HUNG;
    }
    GetExitCodeProcess(process->process, &status);
    return (int)status;
}

static struct child child_run_line(const char *line, const char *input)
{
    static char texts[2][CHILD_TEXT], writable_line[32768];
    struct child_stream streams[3] = {{0}};
    struct child_process process;
    void *workers[3];
    int i;
    streams[0].text = (char *)(input ? input : "");
    streams[0].length = (unsigned long)strlen(streams[0].text);
    for (i = 0; i < 3; ++i) child_open(&streams[i], i == 0);
    for (i = 1; i < 3; ++i) streams[i].text = texts[i - 1];
    struct child_startup startup = {.size = sizeof startup};
    startup.flags = 0x100; /* STARTF_USESTDHANDLES */
    startup.input = streams[0].theirs;
    startup.output = streams[1].theirs;
    startup.error = streams[2].theirs;
    strcpy(writable_line, line);
    int started = CreateProcessA(NULL, writable_line, NULL, NULL, 1, 0, NULL, NULL, &startup, &process);
    for (i = 0; i < 3; ++i) CloseHandle(streams[i].theirs);
    for (i = 0; i < 3; ++i)
        workers[i] = CreateThread(NULL, 0, i == 0 ? child_write : child_read, &streams[i], 0, NULL);
    struct child child = {CHILD_NOT_STARTED, texts[0], texts[1], 0, 0};
    if (started) {
        child.status = child_wait(&process);
        CloseHandle(process.process);
        CloseHandle(process.thread);
    }
    for (i = 0; i < 3; ++i) {
        WaitForSingleObject(workers[i], 5000);
        CloseHandle(workers[i]);
    }
    child.output_length = streams[1].length;
    child.error_length = streams[2].length;
    return child;
}

static struct child child_run(const char *arguments, const char *input)
{
    char line[32768];
    unsigned long length;
    line[0] = '"';
    length = 1 + GetModuleFileNameA(NULL, line + 1, 1024);
    snprintf(line + length, sizeof line - length, "\" %s", arguments);
    return child_run_line(line, input);
}

#endif
