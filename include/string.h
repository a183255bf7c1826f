/* <string.h> - C11 7.24, K.3.7: strings and memory. */
#ifndef _STRING_H
#define _STRING_H

#include <_vexrt.h>

#define RSIZE_MAX _VEXRT_RSIZE_MAX

_VEXRT_BEGIN

/* ---- Blocks of memory ---- */

/* Copy `n` bytes from `s2` to `s1` and return `s1`. With memmove the two may overlap. */
void *memcpy(void *_VEXRT_RESTRICT s1, const void *_VEXRT_RESTRICT s2, size_t n);
void *memmove(void *s1, const void *s2, size_t n);

/* Copies up to the first byte `c`, that one included, and `n` bytes at most. Returns where the copy
   of `c` ends in `s1`, or null when it was not among the `n` bytes. */
void *_memccpy(void *_VEXRT_RESTRICT s1, const void *_VEXRT_RESTRICT s2, int c, size_t n);

/* Sets `n` bytes to `c` and returns `s`. */
void *memset(void *s, int c, size_t n);

/* The first byte `c` among `n`, or null. `n` may reach beyond the memory when `c` is before its
   end. */
void *memchr(const void *s, int c, size_t n);

/* Compare `n` bytes: less than, equal to or greater than 0. _memicmp takes letters of either case,
   by the thread's locale, as equal. */
int memcmp(const void *s1, const void *s2, size_t n);
int _memicmp(const void *s1, const void *s2, size_t n);

/*
 * As memcpy() and memmove(), with `s1max` bytes of room. Return 0. EINVAL for a null pointer, a size
 * above RSIZE_MAX or (memcpy_s) an overlap, ERANGE for `n` above `s1max`: constraint violations,
 * after which `s1max` bytes at `s1` are zero if there can be as many.
 */
errno_t memcpy_s(void *_VEXRT_RESTRICT s1, rsize_t s1max, const void *_VEXRT_RESTRICT s2,
                 rsize_t n);
errno_t memmove_s(void *s1, rsize_t s1max, const void *s2, rsize_t n);

/*
 * Sets `n` bytes to `c`, also where the compiler thinks nobody will look. Returns 0. EINVAL for a
 * null `s` or a size above RSIZE_MAX, ERANGE for `n` above `smax`: constraint violations, after which
 * all `smax` bytes are set if there can be as many.
 */
errno_t memset_s(void *s, rsize_t smax, int c, rsize_t n);

/* ---- Copying and joining strings ---- */

/* Copies `s2`, its terminator included. Returns `s1`. */
char *strcpy(char *_VEXRT_RESTRICT s1, const char *_VEXRT_RESTRICT s2);

/* Writes exactly `n` bytes: `s2` padded with zeros, or cut and then not terminated. Returns `s1`. */
char *strncpy(char *_VEXRT_RESTRICT s1, const char *_VEXRT_RESTRICT s2, size_t n);

/* Append `s2`, or its first `n` bytes at most, and a terminator to `s1`. Return `s1`. */
char *strcat(char *_VEXRT_RESTRICT s1, const char *_VEXRT_RESTRICT s2);
char *strncat(char *_VEXRT_RESTRICT s1, const char *_VEXRT_RESTRICT s2, size_t n);

/*
 * The same with `s1max` bytes of room in all; the result is always terminated and never padded.
 * Return 0. EINVAL for a null pointer, an `s1max` of 0 or above RSIZE_MAX, an `n` above RSIZE_MAX,
 * an `s1` to append to that is not terminated, or an overlap; ERANGE when the result does not fit:
 * constraint violations, after which `s1` is an empty string if there can be one.
 */
errno_t strcpy_s(char *_VEXRT_RESTRICT s1, rsize_t s1max, const char *_VEXRT_RESTRICT s2);
errno_t strncpy_s(char *_VEXRT_RESTRICT s1, rsize_t s1max, const char *_VEXRT_RESTRICT s2,
                  rsize_t n);
errno_t strcat_s(char *_VEXRT_RESTRICT s1, rsize_t s1max, const char *_VEXRT_RESTRICT s2);
errno_t strncat_s(char *_VEXRT_RESTRICT s1, rsize_t s1max, const char *_VEXRT_RESTRICT s2,
                  rsize_t n);

/* A copy of `s`, or of its first `n` bytes at most, to be freed with free(); null with errno ENOMEM
   when there is no memory. */
char *strdup(const char *s);
char *strndup(const char *s, size_t n);

/* ---- Length and comparison ---- */

/* The number of bytes before the terminator. */
size_t strlen(const char *s);

/* The same, but `maxsize` at most, and no byte beyond is looked at. 0 for a null `s`, which is no
   constraint violation. */
size_t strnlen_s(const char *s, size_t maxsize);

/* Compare two strings (or up to `n` bytes of them) byte by byte: less than, equal to or greater than
   0. */
int strcmp(const char *s1, const char *s2);
int strncmp(const char *s1, const char *s2, size_t n);

/* The same without regard to letter case, by the thread's locale: as if both were lower case. */
int _stricmp(const char *s1, const char *s2);
int _strnicmp(const char *s1, const char *s2, size_t n);

/*
 * Compares two strings as the thread's locale sorts: by code in "C", else by the rank that the system
 * gives each byte. Bytes that the system does not sort by do not count; bytes that it sorts alike (such
 * as the two cases of a letter) are equal.
 */
int strcoll(const char *s1, const char *s2);

/* Transforms `s2` so that strcmp() of two results is what strcoll() is of their sources. Writes at most
   `n` bytes, and returns the length of the whole result without its terminator. */
size_t strxfrm(char *_VEXRT_RESTRICT s1, const char *_VEXRT_RESTRICT s2, size_t n);

/* ---- Searching strings ---- */

/* The first and the last `c` in a string, its terminator included, or null. */
char *strchr(const char *s, int c);
char *strrchr(const char *s, int c);

/* How many bytes at the front of `s1` are all in (strspn) or all not in (strcspn) the string `s2`;
   the first byte of `s1` that is in `s2`, or null. */
size_t strspn(const char *s1, const char *s2);
size_t strcspn(const char *s1, const char *s2);
char *strpbrk(const char *s1, const char *s2);

/* The first occurrence of `s2` in `s1`, or null, in time that grows with the sum of the lengths. */
char *strstr(const char *s1, const char *s2);

/*
 * Cuts `s1` into tokens that are separated by the bytes of `s2`. Returns the next token, terminated
 * in place, or null when there is none. With a null `s1` goes on where the thread's last call
 * stopped.
 */
char *strtok(char *_VEXRT_RESTRICT s1, const char *_VEXRT_RESTRICT s2);

/*
 * The same with the position kept in `*ptr`, and in `*s1max` how many bytes there are from it on.
 * Constraint violations (result null, nothing changed): EINVAL for null pointers, for a null `s1`
 * with a null `*ptr`, for a size above RSIZE_MAX; ERANGE when the size ends before the token does.
 */
char *strtok_s(char *_VEXRT_RESTRICT s1, rsize_t *_VEXRT_RESTRICT s1max,
               const char *_VEXRT_RESTRICT s2, char **_VEXRT_RESTRICT ptr);

/* ---- Changing strings in place ---- */

/* Turn a string to lower or upper case, by the thread's locale. Return `s`. */
char *_strlwr(char *s);
char *_strupr(char *s);

/* Set all bytes of a string, or its first `n` at most, to `c`; the length stays. Return `s`. */
char *_strset(char *s, int c);
char *_strnset(char *s, int c, size_t n);

/* Turns a string round. Returns `s`. */
char *_strrev(char *s);

/* ---- Error texts ---- */

/* The message of an errno value. Unassigned numbers up to 255 give "Error #nnn" in a buffer that
   the thread reuses; negative ones and those above 255 "Unknown error". */
char *strerror(int errnum);

/*
 * Copies the message of an errno value into `s` of `maxsize` bytes. Returns 0; ERANGE when the
 * message did not fit and was cut, with dots at its end; EINVAL (a constraint violation) for a null
 * `s` or a size of 0 or above RSIZE_MAX.
 */
errno_t strerror_s(char *s, rsize_t maxsize, errno_t errnum);

/* The length of the whole message of an errno value. */
size_t strerrorlen_s(errno_t errnum);

#ifdef _VEXRT_POSIX
/* The POSIX spelling, and those that are customary on Windows. */
void *memccpy(void *_VEXRT_RESTRICT s1, const void *_VEXRT_RESTRICT s2, int c, size_t n);
int stricmp(const char *s1, const char *s2);
int strnicmp(const char *s1, const char *s2, size_t n);
#endif

_VEXRT_END

#endif
