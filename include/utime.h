/* <utime.h> - POSIX: setting the times of a file. */
#ifndef _UTIME_H
#define _UTIME_H

#include <sys/utime.h>

#endif
