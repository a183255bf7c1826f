/*
 * <regex.h> - POSIX.1-2008 regular expressions, on bytes.
 *
 * The functions bear this library's own spelling, with one leading underscore; the POSIX spellings
 * are there as in the other headers.
 *
 * Without back-references a search takes time proportional to the program times the text, whatever
 * the two are, and memory for the program alone. With them it takes a bounded number of steps.
 * Any number of threads may search with one compiled expression.
 */
#ifndef _REGEX_H
#define _REGEX_H

#include <_vexrt.h>

/* An offset in a text. */
#ifndef _REGOFF_T_DEFINED
#define _REGOFF_T_DEFINED
typedef int regoff_t;
#endif

struct re_guts;

/* A compiled expression. Programs read re_nsub and, for REG_PEND, set re_endp. */
typedef struct {
    int re_magic;
    size_t re_nsub;      /* the number of parenthesised subexpressions */
    const char *re_endp; /* the end of the pattern, with REG_PEND */
    struct re_guts *re_g;
} regex_t;

/* Where a match, or that of a subexpression, starts and ends; -1 when it took no part. */
typedef struct {
    regoff_t rm_so, rm_eo;
} regmatch_t;

/* Flags of _regcomp(). */
#define REG_BASIC 0
#define REG_EXTENDED 1
#define REG_ICASE 2   /* letters of either case are the same */
#define REG_NOSUB 4   /* only whether there is a match is wanted */
#define REG_NEWLINE 8 /* ^ and $ match at newlines too; . and [^...] do not match them */
#define REG_NOSPEC 16 /* every character stands for itself */
#define REG_PEND 32   /* the pattern ends at re_endp and may contain NUL bytes */

/* Flags of _regexec(). */
#define REG_NOTBOL 1   /* the text's start is not the start of a line */
#define REG_NOTEOL 2   /* the text's end is not the end of a line */
#define REG_STARTEND 4 /* the text is what pmatch[0] delimits, NUL bytes included */

/* Results of _regcomp() and _regexec(). */
#define REG_NOERROR 0
#define REG_NOMATCH 1
#define REG_BADPAT 2
#define REG_ECOLLATE 3
#define REG_ECTYPE 4
#define REG_EESCAPE 5
#define REG_ESUBREG 6
#define REG_EBRACK 7
#define REG_EPAREN 8
#define REG_EBRACE 9
#define REG_BADBR 10
#define REG_ERANGE 11
#define REG_ESPACE 12
#define REG_BADRPT 13
#define REG_EMPTY 14
#define REG_ASSERT 15
#define REG_INVARG 16

_VEXRT_BEGIN

/*
 * Compiles `pattern` into *preg. Returns 0, or a code above, after which there is nothing to free.
 * REG_ESPACE also stands for an expression whose program would have more than 2^20 instructions.
 */
int _regcomp(regex_t *_VEXRT_RESTRICT preg, const char *_VEXRT_RESTRICT pattern, int cflags);

/*
 * Looks for the leftmost match in `string`, the longest of those, and stores `nmatch` records: the
 * match, then its subexpressions. Returns 0, or REG_NOMATCH; REG_BADPAT when *preg is not a compiled
 * expression; REG_INVARG when a REG_STARTEND range ends before its start; REG_ESPACE without memory,
 * or when a search with back-references has taken its number of steps. After anything but 0 `pmatch`
 * is unchanged.
 */
int _regexec(const regex_t *_VEXRT_RESTRICT preg, const char *_VEXRT_RESTRICT string, size_t nmatch,
             regmatch_t *_VEXRT_RESTRICT pmatch, int eflags);

/* Stores the text for `code` in `size` bytes at `buf`, cut if need be, terminated unless `size` is 0.
   Returns how many bytes the whole text takes, its terminator included. `preg` is not used. */
size_t _regerror(int code, const regex_t *_VEXRT_RESTRICT preg, char *_VEXRT_RESTRICT buf,
                 size_t size);

/* Frees what *preg holds. An expression that is not compiled, or freed already, is left alone. */
void _regfree(regex_t *preg);

#ifdef _VEXRT_POSIX
/* The POSIX spellings. */
int regcomp(regex_t *_VEXRT_RESTRICT preg, const char *_VEXRT_RESTRICT pattern, int cflags);
int regexec(const regex_t *_VEXRT_RESTRICT preg, const char *_VEXRT_RESTRICT string, size_t nmatch,
            regmatch_t *_VEXRT_RESTRICT pmatch, int eflags);
size_t regerror(int code, const regex_t *_VEXRT_RESTRICT preg, char *_VEXRT_RESTRICT buf, size_t size);
void regfree(regex_t *preg);
#endif

_VEXRT_END

#endif
