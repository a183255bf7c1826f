/* <sys/locking.h> - customary on Windows: modes of _locking(). */
#ifndef _SYS_LOCKING_H
#define _SYS_LOCKING_H

#define LK_UNLCK 0  /* unlock */
#define LK_LOCK 1   /* lock; try nine times, a second apart */
#define LK_NBLCK 2  /* lock, or fail at once */
#define LK_RLCK 3   /* as LK_LOCK */
#define LK_NBRLCK 4 /* as LK_NBLCK */

#endif
