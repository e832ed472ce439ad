#!/bin/sh
# The five sections as the file's section table shows them: all hold bytes, the tables of messages
# are loaded and read-only, the others are not loaded. Arguments: readelf, library, emitted folder.
set -eu
readelf=$1 library=$2 emitted=$3
. "$(dirname "$0")/section_bytes.sh"
failed=0
loaded=0
not_loaded=0
for name in $(section_list | cut -d' ' -f1); do
  # Columns behind the name: type, address, offset, size, entry size, flags if any, and three more.
  row=$($readelf -SW "$library" | sed 's/^ *\[ *[0-9]*\] *//' | awk -v name="$name" '$1 == name')
  set -- $row
  if [ $# -lt 9 ] || [ "$2" != PROGBITS ]; then
    echo "$name: expected a section of bytes, found: $row"
    failed=1
    continue
  fi
  flags=
  [ $# -eq 9 ] || flags=$7
  case $name:$flags in
    *:*[WX]*) echo "$name: is writable or executable, flags $flags"; failed=1 ;;
    .xlog_luids_*:*A*) loaded=$((loaded + 1)) ;;
    .xlog_luids_*) echo "$name: is not loaded, flags $flags"; failed=1 ;;
    *:*A*) echo "$name: is loaded, flags $flags"; failed=1 ;;
    *) not_loaded=$((not_loaded + 1)) ;;
  esac
done
echo "$loaded loaded, $not_loaded not loaded"
[ $loaded -eq 2 ] && [ $not_loaded -eq 3 ] && [ $failed -eq 0 ]
