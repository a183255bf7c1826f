#!/usr/bin/env bash
# Regular expressions natively, under the sanitizers: every small expression and random ones against
# a matcher written from the definition, and where others differ from that; random bytes as patterns.
set -eu
source "$(dirname "$0")/../host/regex_build.sh"
build_regex checked -O1 -fsanitize=address,undefined -fsanitize-trap=undefined
"$work/checked/regex" exhaustive 4
"$work/checked/regex" random 8000 "${SEED:-1}"
"$work/checked/regex" back 5000 "${SEED:-1}"
"$work/checked/regex" garbage 30000 "${SEED:-1}"
