#!/bin/sh
# Installs what is missing of the packages listed in the files given (packages.txt beside this
# script when none is), and nothing else.
set -eu
here=$(dirname "$0")
[ $# -gt 0 ] || set -- "$here/packages.txt"
wanted=$(cat "$@" | sed 's/#.*//' | tr -s ' \t\n' ' ')
missing=
for package in $wanted; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed' ||
    missing="$missing $package"
done
[ -n "$missing" ] || exit 0
echo "installing:$missing"
run=
[ "$(id -u)" -eq 0 ] || run=sudo
$run apt-get update -qq
DEBIAN_FRONTEND=noninteractive $run apt-get install -y -qq --no-install-recommends $missing >/dev/null
