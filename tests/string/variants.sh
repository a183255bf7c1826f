#!/bin/sh
# Builds the string kernels natively and runs them against the plain rule, every variant that the
# processor has.
set -eu
root=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
clang++-19 -m32 -fshort-wchar -std=c++20 -O2 -msse2 -fno-exceptions -fno-rtti -fno-builtin -nostdinc++ -nostdlib++ \
    -Wall -Wextra -I"$root/src" "$root"/tests/host/string.cpp \
    "$root"/src/string/sse2.cpp "$root"/src/string/avx2.cpp "$root"/src/string/two_way.cpp \
    -o "$work/string"
"$work/string"
