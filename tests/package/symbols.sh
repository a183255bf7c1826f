#!/usr/bin/env bash
# Addresses lead to the source: those of the DLL's exports and of a crash in the DLL by vexrt.pdb, those of
# a program by its own PDB.
#
#   symbols.sh DIST
set -eu
bin=$(cd "$1/bin" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
passed=0 failed=0
check() { # WHAT GOT PATTERN
    if [[ $2 =~ $3 ]]; then passed=$((passed + 1)); else
        failed=$((failed + 1))
        printf '%s: got\n%s\ndue\n%s\n' "$1" "$2" "$3"
    fi
}
place() { # IMAGE ADDRESS...: "function file:line" of each, in one line
    llvm-symbolizer-19 --no-inlines "--obj=$1" "${@:2}" | paste -sd ' '
}

# Of one function a family; identical ones may have been folded, these have no twin.
llvm-readobj-19 --coff-exports "$bin/vexrt.dll" | awk '/Name: / { name = $2 } /RVA: / { print name, $2 }' >exports
for export in setvbuf:src.stdio qsort:src.search malloc:src.heap fopen:src.stdio _open:src.io mktime:src.time; do
    name=${export%:*}
    got=$(place "$bin/vexrt.dll" --relative-address "$(awk -v n="$name" '$1 == n { print $2 }' exports)")
    check "the export $name" "$got" "$name.*${export#*:}.*[.](cpp|h):[1-9]"
done

cat >crash.c <<'C'
#include <stdio.h>
#include <stdlib.h>
__attribute__((noinline)) static void spoil(int *where) { *where = 1; }
int main(int argc, char **argv)
{
    volatile int there = 16;
    if (argc > 1) spoil((int *)there);
    return atoi((const char *)there);
}
C
"$bin/vexcc" -g -O1 -fno-builtin crash.c -o crash.exe
crash_address() { # ARGUMENT...: what Wine says of a crash
    WINEDEBUG='' "$bin/vexrun" crash.exe "$@" 2>&1 </dev/null | sed -nE 's/.*page fault.* at address (0x)?([0-9A-Fa-f]+).*/0x\2/p'
}
check "a crash in the library" "$(place "$bin/vexrt.dll" "$(crash_address)")" "src.*:[1-9]"
check "a crash in the program" "$(place crash.exe "$(crash_address now)")" "^spoil .*crash[.]c:3:"
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
