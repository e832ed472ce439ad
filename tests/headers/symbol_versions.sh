#!/bin/sh
# Every exported symbol of a library has its version. Arguments: nm, then pairs of library, version.
set -eu
nm=$1
shift
while [ $# -gt 0 ]; do
  found=$($nm -D --defined-only "$1" | awk '$2 != "A" { print $3 }' | sed 's/^[^@]*//' | sort -u)
  if [ "$found" != "@@$2" ]; then
    echo "$1: symbols of the versions '$found', expected @@$2 alone"
    exit 1
  fi
  shift 2
done
