/* The peers of the differential test: the host's C library, and TRE, behind functions that need no
   header of theirs. Compiled twice, with PEER_NAME as the function's name.

   Either can take exponential time, and is then left by a jump out of a signal's handler. */
#define _GNU_SOURCE
#include PEER_HEADER

#include <setjmp.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/time.h>

#define LIMIT 10

static sigjmp_buf too_slow;

static void leave(int signal_number)
{
    (void)signal_number;
    siglongjmp(too_slow, 1);
}

static void allow(int milliseconds)
{
    struct itimerval timer = {{0, 0}, {0, milliseconds * 1000}};
    struct sigaction action = {.sa_handler = leave};
    sigaction(SIGVTALRM, &action, NULL);
    setitimer(ITIMER_VIRTUAL, &timer, NULL);
}

/* Compiles and matches. Returns 0 and the offsets, 1 for no match, -1 when it does not compile or
   takes too long. */
static int match(const char *pattern, const char *text, int extended, int icase, int newline,
                 int notbol, int noteol, int (*offsets)[2])
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

int PEER_NAME(const char *pattern, const char *text, int extended, int icase, int newline, int notbol,
              int noteol, int (*offsets)[2])
{
    int result;
    if (sigsetjmp(too_slow, 1)) return -1;
    allow(200);
    result = match(pattern, text, extended, icase, newline, notbol, noteol, offsets);
    allow(0);
    return result;
}
