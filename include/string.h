/* <string.h> - C11 7.24, K.3.7: strings and memory. */
#ifndef _STRING_H
#define _STRING_H

#include <_vexrt.h>

#define RSIZE_MAX _VEXRT_RSIZE_MAX

_VEXRT_BEGIN

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

_VEXRT_END

#endif
