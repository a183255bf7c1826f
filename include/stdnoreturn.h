/* <stdnoreturn.h> - C11 7.23. In C++ the keyword would break [[noreturn]]; it is not defined. */
#ifndef _STDNORETURN_H
#define _STDNORETURN_H

#ifndef __cplusplus
#define noreturn _Noreturn
#endif

#endif
