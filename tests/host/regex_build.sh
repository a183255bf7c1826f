# Builds the native test of regular expressions: build_regex FOLDER FLAG... makes $work/FOLDER/regex.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

compile_to() { # FOLDER FLAG..., with the sources on standard input
    local folder=$1
    shift
    xargs -P 2 -I{} sh -c 'clang++-19 "$@" -c {} -o '"$folder"'/$(basename {}).o' sh "$@"
}

build_regex() {
    local folder=$work/$1
    shift
    mkdir -p "$folder"
    local flags=(-m32 -mlong-double-64 -fshort-wchar -std=c++20 -g -msse2 -fno-exceptions -fno-rtti
                 -fno-builtin -nostdinc -isystem "$root/include"
                 -isystem "$(clang-19 -print-resource-dir)/include" -D_VEXRT_BUILD -Wall -Wextra
                 -Wno-ignored-attributes -I"$root/src")
    compile_to "$folder" "${flags[@]}" "$@" < <(printf '%s\n' "$root"/src/regex/*.cpp "$root/tests/host/regex.cpp")
    # The string kernels read whole blocks, which a sanitizer does not know to be harmless.
    compile_to "$folder" "${flags[@]}" -O2 < <(printf '%s\n' "$root"/src/string/{sse2,avx2,two_way}.cpp)
    clang-19 -m32 -O2 -DPEER_NAME=match_host '-DPEER_HEADER=<regex.h>' \
        -c "$root/tests/host/regex_peers.c" -o "$folder/host.o"
    clang-19 -m32 -O2 -DPEER_NAME=match_tre '-DPEER_HEADER=<tre/regex.h>' \
        -c "$root/tests/host/regex_peers.c" -o "$folder/tre.o"
    clang-19 -m32 "$@" "$folder"/*.o "$(ls /usr/lib/i386-linux-gnu/libtre.so.5)" -o "$folder/regex"
}
