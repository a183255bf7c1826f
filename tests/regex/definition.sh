#!/usr/bin/env bash
# Regular expressions natively, under the sanitizers: every small expression and random ones against
# a matcher written from the definition, the host's C library and TRE; random bytes as patterns.
#
# VEXRT_SWEEP=full runs millions.
set -eu
root=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

sanitize=(-fsanitize=address,undefined -fno-sanitize-recover=undefined)
library=()
build_library() { # FOLDER FLAG...
    local folder=$1 source
    shift
    mkdir -p "$folder"
    for source in "$root"/src/regex/*.cpp "$root"/src/string/{sse2,avx2,two_way}.cpp; do
        echo "$source"
    done | xargs -P 2 -I{} sh -c 'clang++-19 "$@" -c {} -o "'"$folder"'/$(basename {}).o"' sh \
        -m32 -mlong-double-64 -fshort-wchar -std=c++20 -O2 -g -msse2 -fno-exceptions -fno-rtti -fno-builtin -nostdinc \
        -isystem "$root/include" -isystem "$(clang-19 -print-resource-dir)/include" \
        -D_VEXRT_BUILD -Wall -Wextra -Wno-ignored-attributes -I"$root/src" "$@"
    clang-19 -m32 -O2 -DPEER_NAME=match_host '-DPEER_HEADER=<regex.h>' -c "$root/tests/host/regex_peers.c" \
        -o "$folder/host.o"
    clang-19 -m32 -O2 -DPEER_NAME=match_tre '-DPEER_HEADER=<tre/regex.h>' -c "$root/tests/host/regex_peers.c" \
        -o "$folder/tre.o"
    clang++-19 -m32 -mlong-double-64 -fshort-wchar -std=c++20 -O2 -g -fno-exceptions -fno-rtti -nostdinc \
        -isystem "$root/include" -isystem "$(clang-19 -print-resource-dir)/include" -D_VEXRT_BUILD \
        -Wall -Wextra "$@" -c "$root/tests/host/regex.cpp" -o "$folder/test.o"
    clang++-19 -m32 "$@" "$folder"/*.o -nostdlib++ /usr/lib/i386-linux-gnu/libtre.so.5 -o "$folder/regex"
}
build_library checked "${sanitize[@]}"
build_library fast
