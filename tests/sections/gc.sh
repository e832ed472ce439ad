#!/bin/sh
# A link that drops what nothing refers to keeps the sections. A section of the test's own, linked
# beside them and referred to by nobody, shows that the link does drop. Arguments: objcopy, readelf,
# C++ compiler, file with the library's objects, emitted folder.
set -eu
objcopy=$1 readelf=$2 cxx=$3 objects=$4 emitted=$5
. "$(dirname "$0")/section_bytes.sh"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
echo '.section .referred_to_by_nobody,"a",%progbits
.byte 1
.section .note.GNU-stack,"",%progbits' >"$work/control.s"
"$cxx" -c "$work/control.s" -o "$work/control.o"

link() { # output, options
  output=$1
  shift
  "$cxx" -shared "$@" "@$objects" "$work/control.o" -o "$output" \
    "-Wl,--version-script=$emitted/exports.map"
}
has_control() { $readelf -SW "$1" | grep -q '\.referred_to_by_nobody'; }

link "$work/whole.so"
has_control "$work/whole.so" || { echo "the control section is not in a plain link"; exit 1; }
link "$work/collected.so" -Wl,--gc-sections
if has_control "$work/collected.so"; then
  echo "the link dropped nothing: the control section is still there"
  exit 1
fi
expect_all_bytes "$work/collected.so" "link with --gc-sections"
