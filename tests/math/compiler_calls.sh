#!/usr/bin/env bash
# What compilers make of mathematics links and works: gcc folds a sine and a cosine of one argument into
# sincos, and complex products and quotients are calls.
#
#   compiler_calls.sh DIST
set -eu
bin=$1/bin
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
cat >calls.c <<'C'
#include <complex.h>
#include <math.h>
#include <stdio.h>
int main(int argc, char **argv)
{
    double x = argc * 0.5;
    float xf = (float)x;
    long double xl = x;
    double complex z = CMPLX(x, 2), w = z * conj(z) / CMPLX(0.25, 0);
    float complex zf = CMPLXF(xf, 2), wf = zf * conjf(zf) / CMPLXF(0.25f, 0);
    printf("%.3f %.3f %.3f ", sin(x) + cos(x), sinf(xf) + cosf(xf), (double)(sinl(xl) + cosl(xl)));
    printf("%.2f %.2f %.2f %.2f\n", creal(w), cimag(w), crealf(wf), cimagf(wf));
    return 0;
}
C
passed=0 failed=0
check() { # WHAT GOT DUE
    if [ "$2" = "$3" ]; then passed=$((passed + 1)); else
        failed=$((failed + 1))
        printf '%s: got %s, due %s\n' "$1" "$2" "$3"
    fi
}
for options in "" --target=i686-w64-windows-gnu --compiler=gcc; do
    for level in -O1 -O2; do
        "$bin/vexcc" $options $level calls.c -o calls.exe || true
        check "vexcc $options $level" "$("$bin/vexrun" ./calls.exe | tr -d '\r')" \
            "1.357 1.357 1.357 17.00 0.00 17.00 0.00"
    done
done
"$bin/vexcc" --compiler=gcc -O1 -c calls.c -o calls.o
check "what gcc calls" "$(llvm-nm-19 --undefined-only calls.o | grep -cE ' (_sincosf?|___(mul|div)[ds]c3)$')" 6
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
