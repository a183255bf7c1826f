#!/usr/bin/env bash
# The examples that use threads and time, against the shell's own tools.
set -eu
bin=$1/bin
root=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
passed=0 failed=0
compare() { # NAME
    if [ -s "$work/due" ] && cmp -s "$work/got" "$work/due"; then passed=$((passed + 1)); else
        failed=$((failed + 1))
        echo "$1 differs:"
        diff "$work/got" "$work/due" | head -5
    fi
}

for example in parallel_wordfreq worldclock; do
    "$bin/vexcc" -O2 "$root/examples/$example.c" -o "$work/$example.exe"
done

cd "$root/src"
files=$(find . -name '*.h' | sort)
# shellcheck disable=SC2086
cat $files | LC_ALL=C tr 'A-Z' 'a-z' | LC_ALL=C tr -cs "a-z0-9'" '\n' | LC_ALL=C sed "s/^'*//" |
    grep . | LC_ALL=C sort | LC_ALL=C uniq -c | LC_ALL=C sort -k1,1nr -k2 | awk '{print $1, $2}' >"$work/due"
for threads in 1 4 9; do
    "$bin/vexrun" "$work/parallel_wordfreq.exe" -j $threads -n 0 <<<"$files" |
        tr -d '\r' | sed '$d' | awk '{print $1, $2}' >"$work/got"
    compare "the count with $threads threads"
done

for moment in 1268560800 1278244800 1288540800 1289109600 1293840000; do
    for zone in America/Los_Angeles America/New_York Atlantic/Reykjavik Europe/London Europe/Berlin \
        Asia/Kolkata Asia/Singapore Asia/Tokyo UTC Europe/Paris; do
        TZ=$zone date -d @$moment '+%F %T'
    done >"$work/due"
    TIMEZONE=':CET:CEST:+0100:040101-7:110101-7' "$bin/vexrun" "$work/worldclock.exe" -s $moment -f '%F %T' |
        tr -d '\r' | sed 's/^.\{15\}//' >"$work/got"
    compare "the world's time at $moment"
done
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
