/* <dlfcn.h> - POSIX: loading of libraries at run time. */
#ifndef _DLFCN_H
#define _DLFCN_H

#include <_vexrt.h>

/* Libraries are always resolved when they are loaded, and their names are their own. */
#define RTLD_LAZY 0
#define RTLD_NOW 0x2
#define RTLD_GLOBAL 0x100
#define RTLD_LOCAL 0
/* For the bit: map the file only; its own references stay open and its entry point is not called. */
#define _RTLD_UNRESOLVED 0x1

_VEXRT_BEGIN

/* Loads a library, or with a null `file` finds the program itself. Returns a handle for the other
   functions; null on failure, which _dlerror() tells. */
void *_dlopen(const char *file, int flag);

/* The address of an exported function or object, or null. */
void *_dlsym(void *handle, const char *name);

/* Gives a library back. Returns 0, or 1 on failure. */
int _dlclose(void *handle);

/* The failure of the calling thread's last _dlopen(), _dlsym() or _dlclose() as a text, once; null when
   it did not fail. */
char *_dlerror(void);

#ifdef _VEXRT_POSIX
/* The POSIX spellings. */
void *dlopen(const char *file, int flag);
void *dlsym(void *_VEXRT_RESTRICT handle, const char *_VEXRT_RESTRICT name);
int dlclose(void *handle);
char *dlerror(void);
#endif

_VEXRT_END

#endif
