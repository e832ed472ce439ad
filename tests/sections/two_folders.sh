#!/bin/sh
# With SOURCE_DATE_EPOCH set, the folder of the project leaves no trace: everything that the emitter
# writes, and a library linked of the sections and one unit of forwarders, are the same bytes in two
# folders. `make reproducible` does this with whole builds. Arguments: emit, C++ compiler, project.
set -eu
emit=$1 cxx=$2 project=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
SOURCE_DATE_EPOCH=1700000000
export SOURCE_DATE_EPOCH

make_in() { # folder of a copy of the project
  mkdir -p "$1/build/some" "$1/runtime"
  cp -R "$project/src" "$project/include" "$1"
  cp -R "$project/runtime/include" "$1/runtime"
  (
    cd "$1/build/some"
    "$emit" --build "$PWD/emitted" "$1"
    "$cxx" -c -I emitted emitted/sections.s -o sections.o
    "$cxx" -c -std=c++20 -O2 -fPIC -ffile-prefix-map="$1/=" -I "$1/src" -I "$1/include" \
      -I "$1/runtime/include" -I emitted "$1/build/some/emitted/forwarders/address_family.cpp" \
      -o forwarders.o
    "$cxx" -shared forwarders.o sections.o -o part.so
  )
}
make_in "$work/one"
make_in "$work/another/folder"
diff -r "$work/one/build" "$work/another/folder/build"
files=$(find "$work/one/build" -type f | wc -l)
[ "$files" -gt 90 ] || { echo "compared $files files only"; exit 1; }
echo "$files files are the same in two folders"
