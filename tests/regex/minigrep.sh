#!/usr/bin/env bash
# The example minigrep prints what the machine's grep prints, over this project's own sources, and
# ends with the same status.
#
#   minigrep.sh DIST
set -eu
dist=$1
root=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export LC_ALL=C
"$dist/bin/vexcc" -O2 "$root/examples/minigrep.c" -o "$work/minigrep.exe"
cd "$root"
files=(src/*/*.cpp src/*/*.h include/*.h docs/*.md)
cat "${files[@]}" >"$work/all"

passed=0 failed=0
compare() { # OPTIONS PATTERN FILE...
    local options=$1 pattern=$2 due=0 got=0
    shift 2
    grep -a $options -e "$pattern" -- "$@" >"$work/due" 2>/dev/null <"$work/all" || due=$?
    "$dist/bin/vexrun" "$work/minigrep.exe" $options -- "$pattern" "$@" 2>/dev/null <"$work/all" |
        tr -d '\r' >"$work/got" || got=$?
    got=${PIPESTATUS[0]:-$got}
    if [ $due = "$got" ] && cmp -s "$work/due" "$work/got"; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        echo "$options '$pattern': status $got, due $due"
        diff "$work/due" "$work/got" | head -5
    fi
}

patterns=(
    'return'
    '^#include <[a-z]*\.h>$'
    '^$'
    'x*'
    '\(.\)\1\1'
    '\([a-z]\)\([a-z]\)\2\1'
    '[[:upper:]]\{4,\}'
    'a.*e.*i.*o.*u'
    '[0-9]\{2,3\}[^0-9]'
    '[]^[-]'
    '\*\*'
    'no such thing'
)
extended=(
    '(int|char|void) \*?[a-z_]+\('
    '^(#include|#define|#pragma)'
    '(a|b|c|d|e|f)+[0-9]*;'
    '[[:space:]]+$'
    '([a-z]+)_([a-z]+)_([a-z]+)_([a-z]+)'
    '(^|[^a-z])if \(.*\) return [a-z]+;'
    '0x[[:xdigit:]]{4,8}'
    '[A-Z][a-z]+([A-Z][a-z]+)+'
    '\(\)|\[\]|\{\}'
    '.{99,}'
    '^[^ ]*$'
    '([a-z]+) \1'
    'q[^u]'
)
for pattern in "${patterns[@]}"; do
    compare -n "$pattern"
    compare -io "$pattern"
done
for pattern in "${extended[@]}"; do
    compare -Ev "$pattern"
    compare -Eoin "$pattern"
done
compare -n 'return' src/regex/regcomp.cpp src/regex/regexec.cpp
compare -c 'return' -
compare -Eic '(return|break);' "${files[@]}"
compare -E '(' -
compare -n 'return' "$work/absent" src/regex/regcomp.cpp
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
