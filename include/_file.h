/* _file.h - FILE, for the headers that declare functions of streams. */
#ifndef _FILE_H
#define _FILE_H

/* A stream. The members are the library's own. */
typedef struct _FILE {
    unsigned int __state[20];
} FILE;

#endif
