#!/usr/bin/env bash
# All conversions over the days from 1970 to 2099, against Python's strftime. VEXRT_SWEEP=full takes every
# day.
set -eu
dist=$1
root=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
step=29
[ "${VEXRT_SWEEP:-}" != full ] || step=1
format='%a|%A|%b|%B|%c|%C|%d|%D|%e|%F|%g|%G|%h|%H|%I|%j|%m|%M|%p|%r|%R|%S|%T|%u|%U|%V|%w|%W|%x|%X|%y|%Y|%%'

"$dist/bin/vexcc" -O2 "$root/tests/programs/format_days.c" -o days.exe
"$dist/bin/vexrun" ./days.exe "$format" $step | tr -d '\r' >got
python3 - "$format" $step >due <<'PYTHON'
import sys, time
for day in range(0, 47482, int(sys.argv[2])):
    print(time.strftime(sys.argv[1], time.gmtime(day * 86400 + day * 7919 % 86400)))
PYTHON
lines=$(wc -l <due)
if [ "$lines" -ge 1600 ] && cmp -s got due; then
    echo "$lines days; 1 passed, 0 failed"
else
    echo "$lines days; $(diff got due | grep -c '^>') differ:"
    diff got due | head -4
    exit 1
fi
