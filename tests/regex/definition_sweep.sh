#!/usr/bin/env bash
# The same as definition.sh with millions of cases, without sanitizers, when VEXRT_SWEEP=full; a
# glance otherwise.
set -eu
source "$(dirname "$0")/../host/regex_build.sh"
build_regex fast -O2
if [ "${VEXRT_SWEEP:-}" = full ]; then
    "$work/fast/regex" exhaustive 7
    for seed in {1..10}; do "$work/fast/regex" random 500000 $seed; done
    "$work/fast/regex" back 1000000 1
    "$work/fast/regex" garbage 5000000 1
else
    "$work/fast/regex" exhaustive 5
    "$work/fast/regex" random 100000 99
    "$work/fast/regex" back 30000 99
    "$work/fast/regex" garbage 200000 99
fi
