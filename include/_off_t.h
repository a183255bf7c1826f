/* _off_t.h - the type of file positions in the POSIX functions. */
#ifndef _OFF_T_H
#define _OFF_T_H

#ifndef _OFF_T_DEFINED
#define _OFF_T_DEFINED
#define _OFF_T_
typedef long _off_t;
typedef long off_t;
#endif

#endif
