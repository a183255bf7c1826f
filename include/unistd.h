/*
 * <unistd.h> - POSIX: descriptors, processes, files by name. The functions are those of <io.h>,
 * <process.h> and <direct.h> with an underscore in front of their names, and are described there.
 * A descriptor is binary unless its file is opened with O_TEXT.
 */
#ifndef _UNISTD_H
#define _UNISTD_H

#include <_off_t.h>
#include <_vexrt.h>

#define STDIN_FILENO 0
#define STDOUT_FILENO 1
#define STDERR_FILENO 2

#define F_OK 0
#define X_OK 0 /* whatever exists */
#define W_OK 2
#define R_OK 4

#ifndef SEEK_SET
#define SEEK_SET 0
#define SEEK_CUR 1
#define SEEK_END 2
#endif

_VEXRT_BEGIN

ssize_t read(int fd, void *buf, size_t count);
ssize_t write(int fd, const void *buf, size_t count);
int close(int fd);
int dup(int fd);
int dup2(int fd, int fd2);
off_t lseek(int fd, off_t offset, int origin);
int fsync(int fd);
int ftruncate(int fd, off_t size);
int isatty(int fd);

int access(const char *path, int mode);
int unlink(const char *path);
int symlink(const char *target, const char *linkpath);
int rmdir(const char *path);
int chdir(const char *path);
char *getcwd(char *buf, size_t size);

int getpid(void);
int execl(const char *path, const char *arg0, ...);
int execle(const char *path, const char *arg0, ...);
int execlp(const char *name, const char *arg0, ...);
int execv(const char *path, char *const argv[]);
int execve(const char *path, char *const argv[], char *const envp[]);
int execvp(const char *name, char *const argv[]);

/* Waits for a number of seconds; see _sleep() of <stdlib.h>. */
unsigned int sleep(unsigned int seconds);

_VEXRT_END

#endif
