#!/usr/bin/env bash
# The example programs, built with each compiler, give the output that they should.
set -eu
bin=$1/bin
examples=$(cd "$(dirname "$0")/../../examples" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
passed=0 failed=0

# check PROGRAM INPUT DUE [ARGUMENT...]: standard output and the exit status
check() {
    local program=$1 input=$2 due=$3 got
    shift 3
    got=$(printf "$input" | { "$bin/vexrun" "$program.exe" "$@" 2>&1; echo "status $?"; } | tr -d '\r')
    if [ "$got" = "$due" ]; then passed=$((passed + 1)); else
        failed=$((failed + 1))
        printf '%s %s: got\n%s\ndue\n%s\n' "$program" "$*" "$got" "$due"
    fi
}

for compiler in clang gcc; do
    for source in "$examples"/*.c; do
        "$bin/vexcc" --compiler=$compiler -O2 "$source" -o "$(basename "$source" .c).exe"
    done
    check columns '1 10 x\n2 20.5\n\n3e0 -5 7 end' "\
column    count          least       greatest           mean      deviation
     1        3              1              3              2              1
     2        3             -5           20.5            8.5         12.816
     3        1              7              7              7              0
status 0"
done
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
