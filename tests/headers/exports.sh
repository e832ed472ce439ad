#!/bin/sh
# What the built library exports is what the golden says, both ways, and the optional handlers are
# weak references. The version of the symbols is an absolute symbol itself and not looked at.
# Arguments: nm, library, golden, handlers.
set -eu
nm=$1 library=$2 golden=$3 handlers=$4
$nm -D --defined-only "$library" | awk '$2 != "A" { sub(/@.*/, "", $3); print $3 }' | LC_ALL=C sort > exported.txt
LC_ALL=C sort "$golden" > expected.txt
if ! diff expected.txt exported.txt > exports.diff; then
  echo "exported names differ from $golden; if intended, run make emit:"
  head -20 exports.diff
  exit 1
fi
$nm -D --undefined-only "$library" |
  awk '$1 == "w" && $2 ~ /^ospf_harbor_oper_tbl_.*_handler$/ { print $2 }' | LC_ALL=C sort > weak.txt
sed -n 's/^uint64_t \(.*_handler\)(.*/\1/p' "$handlers" | LC_ALL=C sort > handlers.txt
if ! diff handlers.txt weak.txt > handlers.diff || [ ! -s weak.txt ]; then
  echo "weak handler references differ from $handlers:"
  head -20 handlers.diff
  exit 1
fi
echo "$(wc -l < exported.txt) names, $(wc -l < weak.txt) weak handlers"
