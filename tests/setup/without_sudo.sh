#!/bin/sh
# A user who is not root and has no sudo is told what root has to install, by name, and gets status
# 1; with sudo the packages are asked for through it. Argument: the install script.
set -eu
script=$1
box=$(mktemp -d)
trap 'rm -rf "$box"' EXIT
mkdir "$box/bin"
for tool in sh dirname cat sed tr grep dpkg-query env; do
  ln -s "$(command -v "$tool")" "$box/bin/$tool"
done
printf '#!/bin/sh\necho 1000\n' >"$box/bin/id"
chmod +x "$box/bin/id"
printf '# a comment\ndpkg\nno-such-package-here\n' >"$box/list"

status=0
PATH=$box/bin sh "$script" "$box/list" >"$box/out" 2>"$box/err" || status=$?
expected='missing packages, and no sudo to install them with; run as root:
  apt-get update && apt-get install --no-install-recommends no-such-package-here'
[ "$status" -eq 1 ] || { echo "status $status without sudo"; exit 1; }
[ "$(cat "$box/err")" = "$expected" ] || { echo "told:"; cat "$box/err"; exit 1; }
[ ! -s "$box/out" ] || { echo "printed:"; cat "$box/out"; exit 1; }

printf '#!/bin/sh\necho "$@"\n' >"$box/bin/sudo"
chmod +x "$box/bin/sudo"
PATH=$box/bin sh "$script" "$box/list" >"$box/out"
expected='installing: no-such-package-here
apt-get update -qq
env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends no-such-package-here'
[ "$(cat "$box/out")" = "$expected" ] || { echo "through sudo:"; cat "$box/out"; exit 1; }
