/* The peers of the differential test: the host's C library, and TRE, behind functions that need no
   header of theirs. Compiled twice, with PEER_NAME as the function's name. */
#include PEER_HEADER

#include <stdlib.h>

#define LIMIT 10

/* Compiles and matches. Returns 0 and the offsets, 1 for no match, -1 when it does not compile. */
int PEER_NAME(const char *pattern, const char *text, int extended, int icase, int newline, int notbol,
              int noteol, int (*offsets)[2])
{
    regex_t expression;
    regmatch_t matches[LIMIT];
    int flags = (extended ? REG_EXTENDED : 0) | (icase ? REG_ICASE : 0) | (newline ? REG_NEWLINE : 0);
    int i, result;
    if (regcomp(&expression, pattern, flags)) return -1;
    result = regexec(&expression, text, LIMIT, matches,
                     (notbol ? REG_NOTBOL : 0) | (noteol ? REG_NOTEOL : 0));
    regfree(&expression);
    if (result) return 1;
    for (i = 0; i < LIMIT; ++i) {
        offsets[i][0] = (int)matches[i].rm_so;
        offsets[i][1] = (int)matches[i].rm_eo;
    }
    return 0;
}
