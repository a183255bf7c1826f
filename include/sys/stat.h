/* <sys/stat.h> - permissions of new files. */
#ifndef _SYS_STAT_H
#define _SYS_STAT_H

#define S_IREAD 0x0100
#define S_IWRITE 0x0080 /* without it a new file is read-only */

#endif
