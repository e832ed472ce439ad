#!/bin/sh
# What is left after an installation: has the loader learn of the libraries where it looks for any in
# their folder, and says otherwise how programs find them. Argument: the folder of the libraries.
set -eu
folder=$1
searched() {
  ldconfig -v -N 2>/dev/null | sed -n 's/^\(\/[^:]*\):.*/\1/p' | while IFS= read -r known; do
    [ "$(realpath "$known")" != "$(realpath "$folder")" ] || echo yes
  done
}
PATH=$PATH:/sbin:/usr/sbin
if [ -z "$(searched)" ]; then
  echo "the loader does not look into $folder by itself: link programs with -Wl,-rpath,'$folder'"
elif [ "$(id -u)" -eq 0 ]; then
  ldconfig
else
  echo "run as root, so that programs find the libraries: ldconfig"
fi
