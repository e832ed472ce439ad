#!/bin/sh
# A user who is not root and has no sudo is told what root has to install, by name, and gets status
# 1; with sudo the packages are asked for through it, with their servers kept from starting meanwhile,
# unless the machine has a policy of its own. Argument: the install script.
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

printf '#!/bin/sh\nprintf "%%s\\n" "$*"\n' >"$box/bin/sudo"
chmod +x "$box/bin/sudo"
asked='apt-get update -qq
env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends no-such-package-here'
PATH=$box/bin HARBOR_POLICY=$box/policy sh "$script" "$box/list" >"$box/out"
expected="installing: no-such-package-here
sh -c printf '#!/bin/sh\nexit 101\n' >'$box/policy' && chmod 755 '$box/policy'
$asked
rm -f $box/policy"
[ "$(cat "$box/out")" = "$expected" ] || { echo "through sudo:"; cat "$box/out"; exit 1; }
touch "$box/policy"
PATH=$box/bin HARBOR_POLICY=$box/policy sh "$script" "$box/list" >"$box/out"
[ "$(cat "$box/out")" = "installing: no-such-package-here
$asked" ] || { echo "beside a policy:"; cat "$box/out"; exit 1; }

# What the policy says while packages are installed, and that it goes in the end, also when they fail.
printf '#!/bin/sh\nexec "$@"\n' >"$box/bin/sudo"
printf '#!/bin/sh\nstatus=0; "$HARBOR_POLICY" nats-server start || status=$?; echo "$status"; exit 1\n' \
  >"$box/bin/apt-get"
chmod +x "$box/bin/apt-get"
for tool in rm chmod; do ln -s "$(command -v "$tool")" "$box/bin/$tool"; done
rm "$box/policy"
status=0
PATH=$box/bin HARBOR_POLICY=$box/policy sh "$script" "$box/list" >"$box/out" || status=$?
[ "$status" -ne 0 ] || { echo "a failure was not told"; exit 1; }
[ "$(tail -1 "$box/out")" = 101 ] || { echo "the policy:"; cat "$box/out"; exit 1; }
[ ! -e "$box/policy" ] || { echo "the policy stays"; exit 1; }
