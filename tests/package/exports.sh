#!/usr/bin/env bash
# The list of exports, the DLL and the public headers agree: the DLL exports what src/vexrt.def lists,
# data as data and functions as functions; every export under a header's name is declared by that
# header; what the headers declare is exported; what stands under no header is declared by none.
#
#   exports.sh DIST
set -eu
dist=$1
root=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

passed=0 failed=0
# Prints the lines of a file (the names at fault) under a heading; an empty file is a pass.
check() { # FILE HEADING
    if [ -s "$1" ]; then
        failed=$((failed + 1))
        sed "s|^|$2: |" "$1"
    else
        passed=$((passed + 1))
    fi
}

# name, kind, header ("-": none)
tr -d '\r' <"$root/src/vexrt.def" | awk '
    /^[ \t]*;/ { header = match($0, /<[^>]+>/) ? substr($0, RSTART + 1, RLENGTH - 2) : "-"; next }
    /^(LIBRARY|EXPORTS)/ || NF == 0 { next }
    { split($1, name, "="); print name[1] "\t" (/ DATA/ ? "data" : "function") "\t" header }
' | sort >listed
cut -f 1 listed | uniq -d >twice
check twice "listed twice"

# What the DLL has: an export is a function when it lies in the code section.
llvm-readobj-19 --sections --coff-exports "$dist/bin/vexrt.dll" | awk '
    function hex(text,   i, value) {
        text = tolower(substr(text, 3))
        for (i = 1; i <= length(text); ++i)
            value = value * 16 + index("0123456789abcdef", substr(text, i, 1)) - 1
        return value
    }
    /^  Section \{/ { section = "" }
    /^    Name: / { section = $2 }
    /^    VirtualSize: / && section == ".text" { size = hex($2) }
    /^    VirtualAddress: / && section == ".text" { start = hex($2) }
    /^  Name: / { name = $2 }
    /^  RVA: / {
        address = hex($2)
        print name "\t" (address >= start && address < start + size ? "function" : "data")
    }
' | sort >exported
cut -f 1,2 listed | comm -23 - exported >missing
cut -f 1,2 listed | comm -13 - exported >extra
check missing "listed, but not (so) exported"
check extra "exported, but not (so) listed"

# What a header declares, with all that it includes.
declared_by() { # HEADER FLAG...
    echo "#include <$1>" | "$dist/bin/vexcc" -fsyntax-only -Xclang -ast-dump -x c "${@:2}" - 2>/dev/null | awk -F "'" '
        /^[|`]-(FunctionDecl|VarDecl) / && !/ implicit / {
            n = split($1, word, " ")
            rest = substr($0, length($1) + 1)
            if (rest ~ / static| inline/) next
            print word[n] "\t" (/-FunctionDecl / ? "function" : "data")
        }' | sort -u
}
: >declared
for header in $(cd "$root/include" && find . -name '*.h' | sed 's|^\./||' | sort); do
    declared_by "$header" >here
    cat here >>declared
    awk -F '\t' -v h="$header" '$3 == h { print $1 "\t" $2 }' listed | comm -23 - here >missing
    check missing "listed under <$header>, but not (so) declared there"
done
sort -u -o declared declared
awk -F '\t' '$3 != "-" { print $1 "\t" $2 }' listed >public
awk -F '\t' '$3 == "-" { print $1 "\t" $2 }' listed | comm -12 - declared >missing
check missing "declared, but listed under no header"

# The POSIX spellings: names for exports, declared by default and by no header of a strict program.
sed -n 's/^ *\([a-z0-9]*\)==\(.*\)$/\1\t\2/p' "$root/src/posix.def" | sort >spellings
cut -f 2 spellings | sort -u | comm -23 - <(cut -f 1 listed) >missing
check missing "behind a POSIX spelling, but not exported"
cut -f 1 spellings | sed 's/$/\tfunction/' >posix
comm -23 posix declared >missing
check missing "a POSIX spelling that no header declares"
for header in $(cd "$root/include" && find . -name '*.h' | sed 's|^\./||' | grep -vxE 'unistd.h|strings.h|utime.h' | sort); do
    declared_by "$header" -std=c11 | comm -12 - posix | sed "s|\t.*| in <$header>|"
done >extra
check extra "a POSIX spelling that a strict program sees"
cut -f 1,2 listed | sort - posix | comm -13 - declared >extra
check extra "declared, but not (so) listed"
cut -f 3 listed | sort -u | grep -vx -e - | while read -r header; do
    [ -f "$root/include/$header" ] || echo "$header"
done >missing
check missing "a group of a header that does not exist"
[ -s listed ] && [ -s exported ] && [ -s declared ] ||
    { echo "one of the three lists is empty"; failed=$((failed + 1)); }

echo "$(wc -l <listed) exports; $passed passed, $failed failed"
[ "$failed" -eq 0 ]
