#!/usr/bin/env bash
# What is built does not depend on where, when and by whom: no file of the tree names a folder of this
# machine, and the DLL bears no time. With VEXRT_SWEEP=full the sources are built once more in another
# folder, under another name and umask, and both trees and packages must be the same bytes.
#
#   reproducible_sweep.sh DIST
set -eu
dist=$(cd "$1" && pwd)
root=$(cd "$(dirname "$0")/../.." && pwd)
passed=0 failed=0
verdict() { # OK WHAT
    if [ "$1" = 0 ]; then passed=$((passed + 1)); else
        failed=$((failed + 1))
        echo "$2"
    fi
}

named=$(grep -rlaF -e "$root" -e "$HOME/" "$dist" || true)
verdict "$([ -z "$named" ]; echo $?)" "these name a folder of this machine: $named"
timeless=0
llvm-readobj-19 --coff-debug-directory "$dist/bin/vexrt.dll" | grep -q 'Type: Repro' || timeless=1
verdict $timeless "vexrt.dll bears the time of its link"

digests() { # FOLDER: what lies in its build/dist, and its packages
    (cd "$1/build" && find dist vexrt-*.zip vexrt-*.tar.gz -type f | LC_ALL=C sort | xargs sha256sum)
}
if [ "${VEXRT_SWEEP:-}" = full ]; then
    other=$(mktemp -d)/elsewhere
    trap 'rm -rf "${other%/*}"' EXIT
    mkdir "$other"
    tar -C "$root" --exclude=./build --exclude=./.git -cf - . | tar -C "$other" -xf -
    (umask 077 && TZ=Asia/Tokyo make -C "$other" dist) >"$other/log" 2>&1 || tail -5 "$other/log"
    differ=$(diff <(digests "$root") <(digests "$other") || true)
    verdict "$([ -z "$differ" ]; echo $?)" "two builds differ: $differ"
fi
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
