#!/usr/bin/env bash
# The accuracy of the mathematical functions against MPFR: prints the greatest error of each and where
# it is, and fails when one is above its bound. VEXRT_SWEEP=full takes a million points a function and
# precision, otherwise it is a thousand and the hard cases.
#
#   accuracy_sweep.sh DIST [FUNCTION]
set -eu
dist=$1
root=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
points=1000
if [ "${VEXRT_SWEEP:-}" = full ]; then points=1000000; fi
gcc -O2 -Wall -Werror -Wno-unused-function "$root/tests/host/math_oracle.c" -lmpfr -lgmp -lm -o "$work/oracle"
"$dist/bin/vexcc" -O2 -fno-builtin -Wall -Werror -I"$root/tests" "$root/tests/programs/accuracy.c" -o "$work/accuracy.exe"
set -o pipefail
"$work/oracle" $points "${@:2}" | "$dist/bin/vexrun" "$work/accuracy.exe" | tr -d '\r'
