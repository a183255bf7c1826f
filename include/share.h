/* <share.h> - customary on Windows: sharing modes of _sopen(). */
#ifndef _SHARE_H
#define _SHARE_H

#define SH_DENYRW 0x10 /* nobody else may open the file */
#define SH_DENYWR 0x20 /* others may read */
#define SH_DENYRD 0x30 /* others may write */
#define SH_DENYNO 0x40 /* others may read and write */

/* As many programs for Windows spell them. */
#define _SH_DENYRW SH_DENYRW
#define _SH_DENYWR SH_DENYWR
#define _SH_DENYRD SH_DENYRD
#define _SH_DENYNO SH_DENYNO

#endif
