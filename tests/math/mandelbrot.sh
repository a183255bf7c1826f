#!/usr/bin/env bash
# The example program that draws: its text and its picture are those of the same program with the host's
# C library; where a colour lies on the edge between two values they may differ by one.
#
#   mandelbrot.sh DIST
set -u
bin=$1/bin
source=$(cd "$(dirname "$0")/../.." && pwd)/examples/mandelbrot.c
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
"$bin/vexcc" -O2 -Wall "$source" -o mandelbrot.exe
gcc -O2 -Wall "$source" -o mandelbrot -lm
passed=0 failed=0
verdict() { # OK WHAT
    if [ "$1" = 0 ]; then passed=$((passed + 1)); else failed=$((failed + 1)); echo "$2"; fi
}
for options in "" "-w 60 -h 20 -n 50 -c -0.75,0.1 -r 0.1"; do
    "$bin/vexrun" ./mandelbrot.exe $options | tr -d '\r' >ours
    ./mandelbrot $options >theirs
    [ -s ours ] && cmp -s ours theirs
    verdict $? "the texts of '$options' differ"
done
"$bin/vexrun" ./mandelbrot.exe -p -w 160 -h 120 >ours
./mandelbrot -p -w 160 -h 120 >theirs
differing=$(cmp -l ours theirs | wc -l)
[ "$(wc -c <ours)" = $((15 + 3 * 160 * 120)) ] && [ "$differing" -le 20 ]
verdict $? "the pictures differ in $differing bytes"
"$bin/vexrun" ./mandelbrot.exe -x 2>/dev/null
[ $? = 2 ]
verdict $? "a wrong option is taken"
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
