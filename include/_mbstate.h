/* _mbstate.h - the state of a conversion between multibyte and wide characters. */
#ifndef _MBSTATE_H
#define _MBSTATE_H

/* All zero is the initial state. */
#ifndef _MBSTATE_T_DEFINED
#define _MBSTATE_T_DEFINED
typedef struct {
    unsigned int __value;
    unsigned short __flags;
    unsigned short __state;
} mbstate_t;
#endif

#endif
