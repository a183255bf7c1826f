#!/bin/sh
# Texts to floating point against the multiple-precision library: VEXRT_SWEEP=full for ten million.
set -eu
root=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
gcc -O2 -Wall "$root/tests/host/decimal_cases.c" -o "$work/cases" -lmpfr -lgmp
"$1/bin/vexcc" -O1 "$root/tests/programs/check_decimals.c" -o "$work/check.exe"
count=100000
[ "${VEXRT_SWEEP:-}" = full ] && count=10000000
"$work/cases" "$count" "${VEXRT_SEED:-1}" | "$1/bin/vexrun" "$work/check.exe"
