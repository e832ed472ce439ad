#!/bin/sh
# What the built library exports is what the golden says, both ways, and the optional handlers are
# weak references. Arguments: nm, library, golden.
set -eu
nm=$1 library=$2 golden=$3
$nm -D --defined-only "$library" | awk '{ sub(/@.*/, "", $3); print $3 }' | LC_ALL=C sort > exported.txt
LC_ALL=C sort "$golden" > expected.txt
if ! diff expected.txt exported.txt > exports.diff; then
  echo "exported names differ from $golden; if intended, run make emit:"
  head -20 exports.diff
  exit 1
fi
weak=$($nm -D --undefined-only "$library" | awk '$1 == "w" && $2 ~ /^ospf_harbor_oper_tbl_.*_handler$/' | wc -l)
if [ "$weak" -ne 147 ]; then
  echo "found $weak weak handler references, expected 147"
  exit 1
fi
echo "$(wc -l < exported.txt) names, 147 weak handlers"
