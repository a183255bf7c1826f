#!/bin/sh
# Builds the formatting of dates and the zone parser natively, and runs them on locales and zones that
# no program reaches.
set -eu
root=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
clang-19 -m32 -fshort-wchar -std=c++20 -O1 -g -msse2 -fms-extensions -fno-exceptions -fno-rtti -fno-builtin -mlong-double-64 \
    -fsanitize=address,undefined -fno-sanitize-recover=undefined -nostdinc \
    -isystem "$root/include" -isystem "$(clang-19 -print-resource-dir)/include" -D_VEXRT_BUILD \
    -Wall -Wextra -Wno-ignored-attributes -Wno-dll-attribute-on-redeclaration -I"$root/src" \
    "$root"/tests/host/time.cpp "$root"/src/locale/multibyte.cpp "$root"/src/time/format_time.cpp \
    "$root"/src/time/week.cpp "$root"/src/time/era.cpp "$root"/src/time/zone.cpp \
    "$root"/src/time/zone_rules.cpp -o "$work/time"
"$work/time"
