/* <sys/types.h> - types of the system interfaces. */
#ifndef _SYS_TYPES_H
#define _SYS_TYPES_H

#include <_vexrt.h>

#ifndef _OFF_T_DEFINED
#define _OFF_T_DEFINED
#define _OFF_T_
typedef long _off_t;
typedef long off_t;
#endif

#endif
