#!/bin/sh
# Builds multibyte conversion and the formatted output engine natively, and runs them in locales of
# every mode.
set -eu
root=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
clang-19 -m32 -fshort-wchar -std=c++20 -O1 -g -msse2 -fms-extensions -fno-exceptions -fno-rtti -fno-builtin -mlong-double-64 \
    -fsanitize=address,undefined -fsanitize-trap=undefined -nostdinc \
    -isystem "$root/include" -isystem "$(clang-19 -print-resource-dir)/include" -D_VEXRT_BUILD \
    -Wall -Wextra -Wno-ignored-attributes -Wno-dll-attribute-on-redeclaration -I"$root/src" \
    "$root"/tests/host/multibyte.cpp "$root"/src/locale/multibyte.cpp "$root"/src/format/formatter.cpp \
    "$root"/src/format/float_field.cpp "$root"/src/format/float_digits.cpp \
    -o "$work/multibyte"
"$work/multibyte"
