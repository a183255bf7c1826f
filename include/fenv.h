/*
 * <fenv.h> - C11 7.6: the floating-point environment.
 *
 * The processor has two floating-point units: x87, and SSE with its control register. An environment
 * object holds that of the x87 unit alone. Flags and rounding are set in both; what acts on the x87
 * unit only says so.
 */
#ifndef _FENV_H
#define _FENV_H

#include <_vexrt.h>

#define FE_INVALID 0x01
#define FE_DIVBYZERO 0x04
#define FE_OVERFLOW 0x08
#define FE_UNDERFLOW 0x10
#define FE_INEXACT 0x20
#define FE_ALL_EXCEPT 0x3D

#define FE_TONEAREST 0
#define FE_DOWNWARD 1
#define FE_UPWARD 2
#define FE_TOWARDZERO 3

/* The x87 environment as the processor stores it. */
typedef struct {
    unsigned int __control, __status, __tags, __pointers[4];
} fenv_t;

/* Exception flags. */
typedef unsigned int fexcept_t;

_VEXRT_BEGIN

/* The default: all exceptions masked, 53-bit precision, rounding to nearest. */
_VEXRT_DATA const fenv_t __dfl_fenv;
#define FE_DFL_ENV (&__dfl_fenv)

/* The same with an empty register stack, for programs to change. */
_VEXRT_DATA fenv_t __fenv;

/* Unless stated otherwise the functions return 0. Exceptions outside FE_ALL_EXCEPT are ignored. */

/* Clears flags. */
int feclearexcept(int excepts);

/* Stores the x87 unit's flags of `excepts` in *flagp. */
int fegetexceptflag(fexcept_t *flagp, int excepts);

/* Raises exceptions on the x87 unit, one after the other; one that is not masked traps. */
int feraiseexcept(int excepts);

/* Sets the flags of `excepts` as they stand in *flagp, without raising anything. */
int fesetexceptflag(const fexcept_t *flagp, int excepts);

/* Returns those of `excepts` whose flag is set in either unit. */
int fetestexcept(int excepts);

/* The rounding direction of the x87 unit. */
int fegetround(void);

/* Sets the rounding direction. 1, and nothing changes, when `round` is none. */
int fesetround(int round);

/* Stores the environment of the x87 unit. */
int fegetenv(fenv_t *envp);

/* Stores the environment of the x87 unit and masks all exceptions of both. Unlike ISO C it leaves
   the flags as they are. */
int feholdexcept(fenv_t *envp);

/* Sets the environment of the x87 unit. With FE_DFL_ENV the register stack is empty afterwards. */
int fesetenv(const fenv_t *envp);

/* The same, and then raises the exceptions whose flags were set before. */
int feupdateenv(const fenv_t *envp);

_VEXRT_END

#endif
