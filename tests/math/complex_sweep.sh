#!/usr/bin/env bash
# The accuracy of the complex functions against MPC, as accuracy_sweep.sh measures the real ones.
#
#   complex_sweep.sh DIST [FUNCTION]
set -eu
dist=$1
root=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
points=1000
if [ "${VEXRT_SWEEP:-}" = full ]; then points=1000000; fi
gcc -O2 -Wall -Werror -Wno-unused-function "$root/tests/host/complex_oracle.c" -lmpc -lmpfr -lgmp -lm \
    -o "$work/oracle"
"$dist/bin/vexcc" -O2 -fno-builtin -Wall -Werror -I"$root/tests" "$root/tests/programs/complex_accuracy.c" \
    -o "$work/accuracy.exe"
set -o pipefail
"$work/oracle" $points "${@:2}" | "$dist/bin/vexrun" "$work/accuracy.exe" | tr -d '\r'
