/*
 * sweep.h - how many cases a sweep goes through: few in the daily run, many when the environment says
 * VEXRT_SWEEP=full.
 */
#ifndef SWEEP_H
#define SWEEP_H

__declspec(dllimport) unsigned long __stdcall GetEnvironmentVariableA(const char *name, char *value,
                                                                      unsigned long size);

static long sweep_count(long few, long many)
{
    char mode[8];
    unsigned long length = GetEnvironmentVariableA("VEXRT_SWEEP", mode, sizeof mode);
    return length == 4 && mode[0] == 'f' ? many : few;
}

#endif
