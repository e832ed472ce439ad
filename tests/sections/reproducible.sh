#!/bin/sh
# Builds both libraries of the checked-out commit in two folders, each from nothing, and compares them
# byte by byte. The folders differ in name and depth, the second build also in time zone.
# No compiler cache takes part: it would hand the second build the objects of the first.
# Argument: jobs.
set -eu
jobs=$1
cd "$(dirname "$0")/../.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
CCACHE_DISABLE=1
export SOURCE_DATE_EPOCH CCACHE_DISABLE

build() { # folder, jobs
  mkdir -p "$1"
  git archive HEAD | tar -x -C "$1"
  (cd "$1" && cmake --preset release && cmake --build --preset release -j "$2" \
    --target kelp ospf_harbor_oper) >"$1.log" 2>&1 || { tail -30 "$1.log"; exit 1; }
}
first=$work/one
second=$work/another/folder
build "$first" "$jobs"
TZ=Pacific/Auckland build "$second" "$jobs"

failed=0
for library in runtime/libkelp.so src/libospf_harbor_oper.so; do
  sha256sum "$first/build/release/$library" "$second/build/release/$library" | sed "s|$work/||"
  cmp "$first/build/release/$library" "$second/build/release/$library" || failed=1
done
[ $failed -eq 0 ] || exit 1
echo "two folders, the same libraries"
