/* <sys/types.h> - types of the system interfaces. */
#ifndef _SYS_TYPES_H
#define _SYS_TYPES_H

#include <_off_t.h>
#include <_vexrt.h>

#endif
