/* <share.h> - sharing modes of _sopen(). */
#ifndef _SHARE_H
#define _SHARE_H

#define SH_DENYRW 0x10 /* nobody else may open the file */
#define SH_DENYWR 0x20 /* others may read */
#define SH_DENYRD 0x30 /* others may write */
#define SH_DENYNO 0x40 /* others may read and write */

#endif
