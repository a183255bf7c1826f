#!/usr/bin/env bash
# Builds child_block.cpp with the library's own sources, and runs it.
set -eu
root=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$1/bin/vexcc" -std=c++20 -O1 -D_VEXRT_BUILD -I"$root/src" "$root/tests/io/child_block.cpp" -o "$work/child_block.exe"
"$1/bin/vexrun" "$work/child_block.exe"
