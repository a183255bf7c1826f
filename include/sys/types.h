/* <sys/types.h> - types of the system interfaces. */
#ifndef _SYS_TYPES_H
#define _SYS_TYPES_H

#include <_off_t.h>
#include <_timespec.h>
#include <_vexrt.h>

#ifdef _VEXRT_POSIX
#ifndef _MODE_T_
#define _MODE_T_
typedef unsigned short mode_t;
#endif
#ifndef _PID_T_
#define _PID_T_
typedef int pid_t;
#endif
#endif

#endif
