#!/usr/bin/env bash
# The documents: links lead somewhere, and the list of differences is what the headers say. (That every
# export has its page in the manual, package.sh checks.)
set -eu
cd "$(dirname "$0")/../.."
tools/links
tools/manual/differences.py --check
