#!/bin/sh
# The sources are formatted and pass the static analyser.
exec "$(dirname "$0")/../../tools/lint"
