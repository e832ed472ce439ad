#!/bin/sh
# Installs what is missing of the packages listed in the files given (packages.txt beside this
# script when none is), and nothing else. Asks for root by sudo; where there is none, says what root
# has to install and gives 1.
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
run=
if [ "$(id -u)" -ne 0 ]; then
  if ! command -v sudo >/dev/null; then
    echo "missing packages, and no sudo to install them with; run as root:" >&2
    echo "  apt-get update && apt-get install --no-install-recommends$missing" >&2
    exit 1
  fi
  run=sudo
fi
echo "installing:$missing"
# Packages of servers start them as they are installed. Nothing here needs that: tests start their own.
policy=${HARBOR_POLICY:-/usr/sbin/policy-rc.d}
if [ ! -e "$policy" ]; then
  trap '$run rm -f "$policy"' EXIT
  trap 'exit 1' HUP INT TERM
  $run sh -c "printf '#!/bin/sh\nexit 101\n' >'$policy' && chmod 755 '$policy'"
fi
$run apt-get update -qq
$run env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends $missing
# Nor at the next start of the machine.
case "$missing " in
  *" nats-server "*) ! command -v systemctl >/dev/null || $run systemctl disable --quiet nats-server ;;
esac
