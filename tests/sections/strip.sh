#!/bin/sh
# Stripping the library, by itself or while it is installed, leaves the sections' bytes. Arguments:
# objcopy, strip, cmake, library, emitted folder, build folder.
set -eu
objcopy=$1 strip=$2 cmake=$3 library=$4 emitted=$5 build=$6
. "$(dirname "$0")/section_bytes.sh"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
expect_all_bytes "$library" "as built"
for option in "" --strip-all --strip-unneeded --strip-debug; do
  # shellcheck disable=SC2086
  $strip $option -o "$work/stripped" "$library"
  if cmp -s "$library" "$work/stripped"; then
    echo "strip $option changed nothing"
    exit 1
  fi
  expect_all_bytes "$work/stripped" "strip $option"
done
"$cmake" --install "$build" --strip --prefix "$work/usr" >"$work/install.log"
installed=$(find "$work/usr" -type f -name 'libospf_harbor_oper.so*')
expect_all_bytes "$installed" "install --strip"
