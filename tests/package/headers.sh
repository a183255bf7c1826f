#!/usr/bin/env bash
# Every public header stands alone: it compiles by itself and included twice, as C11 and as C++20, with
# each compiler that vexcc knows, without a warning; what it includes is this tree's or the compiler's
# own. All of them together go with the platform's <windows.h>, before it and after it.
#
#   headers.sh DIST
set -eu
dist=$1
root=$(cd "$(dirname "$0")/../.." && pwd)
vexcc=$dist/bin/vexcc
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

warnings=(-Wall -Wextra -Wpedantic -Werror)
headers=$(cd "$root/include" && find . -name '*.h' ! -name '_*' | sed 's|^\./||' | sort)
targets=("--target=i686-pc-windows-msvc" "--target=i686-w64-windows-gnu" "--compiler=gcc")
passed=0 failed=0

verdict() { # OK WHAT: with the compiler's first complaint from the file log
    if [ "$1" = 0 ]; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        echo "$2: $(grep -m1 -E 'error|warning' log || head -1 log)"
    fi
}

compile() { # WHAT PROGRAM FLAG...
    local what=$1 program=$2 status=0
    shift 2
    "$vexcc" "$@" "${warnings[@]}" -fsyntax-only - <<<"$program" >log 2>&1 || status=1
    verdict "$status" "$what"
}

languages() { # TARGET: C++ only where its compiler is installed
    echo c:c11 c:gnu11
    echo 'int nothing;' | "$vexcc" "$1" -x c++ -fsyntax-only - 2>/dev/null && echo c++:c++20
}

for target in "${targets[@]}"; do
    for language in $(languages "$target"); do
        for header in $headers; do
            compile "<$header> as ${language#*:} with ${target#*=}" \
                "$(printf '#include <%s>\n' "$header" "$header")
                 extern int nothing;" "$target" -x "${language%:*}" "-std=${language#*:}"
        done
    done
done

# All headers at once, and what they pull in.
printf '#include <%s>\n' $headers >all.h
for target in "${targets[@]}"; do
    compiler=$("$vexcc" "$target" -print-file-name=include)
    "$vexcc" "$target" -M -MT all -x c all.h 2>log | tr -d '\\' | tr ' ' '\n' | grep / |
        while read -r file; do readlink -m "$file"; done |
        grep -v -e "^$(readlink -f "$dist")/include/" -e "^$(readlink -f "$compiler")/" >foreign || true
    cp foreign log
    verdict "$([ -s foreign ] && echo 1 || echo 0)" "files from elsewhere with ${target#*=}"
done

# With the platform's headers, in a program that uses both. They do not bear the macro of <stdnoreturn.h>.
printf '#include <%s>\n' $headers | grep -v stdnoreturn >all.h
body='
int main(void)
{
    SYSTEMTIME now;
    GetSystemTime(&now);
    char *text = (char *)malloc(32);
    if (!text || now.wYear < 2000) return 1;
    strcpy(text, "both");
    puts(text);
    free(text);
    return GetLastError() == 12345;
}'
for target in "${targets[@]}"; do
    for order in before after; do
        case $order in
        before) printf '#include "all.h"\n#include <windows.h>\n%s\n' "$body" ;;
        after) printf '#include <windows.h>\n#include "all.h"\n%s\n' "$body" ;;
        esac >both.c
        what="all headers $order <windows.h> with ${target#*=}"
        status=0
        "$vexcc" "$target" -std=gnu11 -Wall -I. both.c -o both.exe >log 2>&1 || status=1
        if [ $status = 0 ] && grep -q 'warning' log; then status=1; fi
        if [ $status = 0 ]; then
            "$dist/bin/vexrun" ./both.exe 2>&1 </dev/null | tr -d '\r' >log
            [ "$(cat log)" = both ] || status=1
        fi
        verdict "$status" "$what"
    done
done

echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
