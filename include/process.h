/* <process.h> - customary on Windows: child processes, and threads by their handles. */
#ifndef _PROCESS_H
#define _PROCESS_H

#include <_vexrt.h>

/* The first argument of the _spawn functions: wait for the child and return its exit code; return its
   process handle (either); start it and end this process with status 0; start it detached from the
   console, without descriptors 0 to 2, and return 0. */
#define _P_WAIT 0
#define _P_NOWAIT 1
#define _P_OVERLAY 2
#define _P_NOWAITO 3
#define _P_DETACH 4

_VEXRT_BEGIN

/* ---- Starting programs ---- */

/*
 * Start the program `path`: l takes its arguments one by one and a null pointer behind them, v as a
 * vector that ends in one; the first argument is by custom the program's name. e takes an environment,
 * a vector of "name=value", behind the arguments; without it the child gets that of the process. Names
 * without a directory are those of the current one; p searches the directories of PATH as well, for a
 * name that has no '/'. A name without extension gets .com, .exe, .bat or .cmd, the first that exists.
 *
 * Arguments are joined by blanks as they are: those that contain blanks or quotes must be quoted by the
 * caller. Descriptors are inherited but those opened with O_NOINHERIT, with their text mode.
 *
 * Return what the mode says, errno being 0 then; -1 with EINVAL (null pointers, no mode), ENOENT, E2BIG
 * or EINVAL (too long), ENOEXEC, EACCES, ENOMEM and what else the system reports.
 */
intptr_t _spawnl(int mode, const char *path, const char *arg0, ...);
intptr_t _spawnle(int mode, const char *path, const char *arg0, ...);
intptr_t _spawnlp(int mode, const char *name, const char *arg0, ...);
intptr_t _spawnlpe(int mode, const char *name, const char *arg0, ...);
intptr_t _spawnv(int mode, const char *path, char *const argv[]);
intptr_t _spawnve(int mode, const char *path, char *const argv[], char *const envp[]);
intptr_t _spawnvp(int mode, const char *name, char *const argv[]);
intptr_t _spawnvpe(int mode, const char *name, char *const argv[], char *const envp[]);
intptr_t _wspawnl(int mode, const wchar_t *path, const wchar_t *arg0, ...);
intptr_t _wspawnle(int mode, const wchar_t *path, const wchar_t *arg0, ...);
intptr_t _wspawnlp(int mode, const wchar_t *name, const wchar_t *arg0, ...);
intptr_t _wspawnlpe(int mode, const wchar_t *name, const wchar_t *arg0, ...);
intptr_t _wspawnv(int mode, const wchar_t *path, wchar_t *const argv[]);
intptr_t _wspawnve(int mode, const wchar_t *path, wchar_t *const argv[], wchar_t *const envp[]);
intptr_t _wspawnvp(int mode, const wchar_t *name, wchar_t *const argv[]);
intptr_t _wspawnvpe(int mode, const wchar_t *name, wchar_t *const argv[], wchar_t *const envp[]);

/* The same with the mode _P_OVERLAY: they return, with -1, only on failure. */
intptr_t _execl(const char *path, const char *arg0, ...);
intptr_t _execle(const char *path, const char *arg0, ...);
intptr_t _execlp(const char *name, const char *arg0, ...);
intptr_t _execlpe(const char *name, const char *arg0, ...);
intptr_t _execv(const char *path, char *const argv[]);
intptr_t _execve(const char *path, char *const argv[], char *const envp[]);
intptr_t _execvp(const char *name, char *const argv[]);
intptr_t _execvpe(const char *name, char *const argv[], char *const envp[]);
intptr_t _wexecl(const wchar_t *path, const wchar_t *arg0, ...);
intptr_t _wexecle(const wchar_t *path, const wchar_t *arg0, ...);
intptr_t _wexeclp(const wchar_t *name, const wchar_t *arg0, ...);
intptr_t _wexeclpe(const wchar_t *name, const wchar_t *arg0, ...);
intptr_t _wexecv(const wchar_t *path, wchar_t *const argv[]);
intptr_t _wexecve(const wchar_t *path, wchar_t *const argv[], wchar_t *const envp[]);
intptr_t _wexecvp(const wchar_t *name, wchar_t *const argv[]);
intptr_t _wexecvpe(const wchar_t *name, wchar_t *const argv[], wchar_t *const envp[]);

/* ---- Waiting for them ---- */

/*
 * Wait for the process with a handle that a spawn returned, and store its exit code in *status (if not
 * null; -1 on failure). _cwait() ignores `action` and closes the handle in every case; _waitpid() does
 * not, and ignores bits 0 and 1 of its options. Return the handle; -1 with ECHILD for what is no process handle and
 * EINVAL for other options.
 */
intptr_t _cwait(int *status, intptr_t handle, int action);
intptr_t _waitpid(intptr_t pid, int *status, int options);

/* The system's number of the calling process. */
int _getpid(void);

/* ---- Threads by their handles ---- */

/*
 * Starts a thread that calls start(arg), with a stack of `stack_size` bytes (0: the program's default).
 * Returns its handle, which is closed when the thread ends, or all bits set with errno from the system;
 * EINVAL for null.
 */
uintptr_t _beginthread(void(__cdecl *start)(void *), unsigned int stack_size, void *arg);

/*
 * The same with all that the system's CreateThread takes. The handle is the caller's to close. Returns 0
 * with errno from the system; EINVAL for a null `start`.
 */
uintptr_t _beginthreadex(void *security, unsigned int stack_size,
                         unsigned int(__stdcall *start)(void *), void *arg, unsigned int flags,
                         unsigned int *thread_id_out);

/* End the calling thread, with status 0 or `code`. Storage destructors run. Returning from the start
   routine does the same. */
_VEXRT_NORETURN void _endthread(void);
_VEXRT_NORETURN void _endthreadex(unsigned int code);

_VEXRT_END

#endif
