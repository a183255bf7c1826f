/* _va_list.h - va_list alone, for the headers that declare the `v` members of a family. */
#ifndef _VA_LIST_H
#define _VA_LIST_H

typedef __builtin_va_list __gnuc_va_list;
#ifndef _VA_LIST_DEFINED
#define _VA_LIST_DEFINED
typedef __gnuc_va_list va_list;
#endif

#endif
