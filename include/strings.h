/* <strings.h> - POSIX: comparison without regard to letter case. */
#ifndef _STRINGS_H
#define _STRINGS_H

#include <_vexrt.h>

_VEXRT_BEGIN

/* As _stricmp() and _strnicmp() of <string.h>. */
int strcasecmp(const char *s1, const char *s2);
int strncasecmp(const char *s1, const char *s2, size_t n);

_VEXRT_END

#endif
