/* <stdalign.h> - C11 7.15: alignment. */
#ifndef _STDALIGN_H
#define _STDALIGN_H

#ifndef __cplusplus
#define alignas _Alignas
#define alignof _Alignof
#endif
#define __alignas_is_defined 1
#define __alignof_is_defined 1

#endif
