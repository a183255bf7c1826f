#!/bin/sh
# No include of the library's sources points up, and the check sees one that does.
set -eu
root=$(cd "$(dirname "$0")/../.." && pwd)
"$root/tools/floors"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/tools" "$work/src/heap"
cp "$root/tools/floors" "$work/tools"
echo '#include "stdio/stream.h"' >"$work/src/heap/wrong.cpp"
! "$work/tools/floors"
