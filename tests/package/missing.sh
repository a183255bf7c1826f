#!/usr/bin/env bash
# vexcc says what is missing and how to get it.
#
#   missing.sh DIST
set -eu
dist=$(cd "$1" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
passed=0 failed=0
# check WHAT PATTERN COMMAND...: fails, with one line that says so
check() {
    local what=$1 pattern=$2 status=0 got
    shift 2
    got=$("$@" 2>&1) && status=1
    if [ $status = 0 ] && [[ $got =~ $pattern ]] && [ "$(wc -l <<<"$got")" = 1 ]; then passed=$((passed + 1)); else
        failed=$((failed + 1))
        printf '%s: got\n%s\ndue one line with\n%s\n' "$what" "$got" "$pattern"
    fi
}
echo 'int main(void) { return 0; }' >program.c

# A PATH with the shell's tools and only some of the compilers.
mkdir tools
for tool in bash env readlink dirname basename mktemp grep rm; do ln -s "$(command -v $tool)" tools/; done
with() { # "PROGRAM..." COMMAND...: the command with those programs
    local program folder
    folder=$(mktemp -d "$work/path.XXXX")
    for program in $1; do ln -s "$(command -v "$program")" "$folder/"; done
    shift
    PATH=$folder:$work/tools "$@"
}
vexcc=$dist/bin/vexcc
check "no clang" '^vexcc: clang-19 is not installed; .*apt-get install clang-19$' with "" "$vexcc" program.c
check "no gcc" 'i686-w64-mingw32-gcc is not .*install gcc-mingw-w64-i686-win32$' with "" "$vexcc" --compiler=gcc program.c
check "no llvm" 'llvm-nm-19 is not installed; .*install llvm-19$' with clang-19 "$vexcc" program.c
check "no linker" 'lld-link-19 is not installed; .*install lld-19$' with "clang-19 llvm-nm-19" "$vexcc" program.c
check "no source" '^vexcc: no such file: nothing[.]c$' "$vexcc" nothing.c
check "no input" '^vexcc: no input files$' "$vexcc"
check "no library" '^vexcc: cannot find -lnothing: ' "$vexcc" program.c -lnothing
check "unknown compiler" '^vexcc: unknown compiler .tcc.: clang or gcc$' "$vexcc" --compiler=tcc program.c
mkdir -p alone/bin
cp "$vexcc" alone/bin
check "vexcc alone" 'alone/include/stdio.h is missing: ' alone/bin/vexcc program.c
check "no wine" '^vexrun: wine is not installed .*wine32:i386' with "" "$dist/bin/vexrun" program.exe
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
