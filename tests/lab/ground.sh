# shellcheck shell=bash
# ground.sh: what verbs.sh changes, and its end. `out` is the folder for what is to be kept; where it
# is not set, nothing is. Only processes and namespaces that were made here are ended, whatever
# happens.
export LC_ALL=C TZ=UTC

prefix="ht$$"
scratch=$(mktemp -d)
chmod 755 "$scratch"
out=${out:-$scratch}
sockets=/var/run/frr
frr=${FRR_BIN:-/usr/lib/frr}
routers=()
segments=()
tcpdumps=()
: >"$out/events.txt"
printf 'segment\trouter\tinterface\tifindex\n' >"$out/segments.tsv"

# Per router: frr or bird, and the daemons beside zebra. Per "router daemon": its process.
declare -A kind=() wanted=() process=()
# Per segment: the namespace and the interface that are listened to.
declare -A heard_at=()
# The captures that are written, by name; all.pcap from the start.
captures=(all)

finish() {
    set +e
    for pid in "${tcpdumps[@]}" "${process[@]}"; do kill "$pid" 2>/dev/null; done
    for _ in 1 2 3 4 5 6 7 8 9 10; do
        kill -0 "${tcpdumps[@]}" "${process[@]}" 2>/dev/null || break
        sleep 0.1
    done
    for pid in "${tcpdumps[@]}" "${process[@]}"; do kill -KILL "$pid" 2>/dev/null; done
    for name in "${routers[@]}" switch; do
        ip netns del "$prefix-$name" 2>/dev/null
        rm -rf "${sockets:?}/$prefix-$name"
    done
    [ -n "${LAB_KEEP_LOGS:-}" ] || rm -rf "$scratch"
}
trap finish EXIT
trap 'exit 130' INT TERM HUP
: >"$scratch/empty.conf"
chmod 644 "$scratch/empty.conf"

# shellcheck source=/dev/null
. "$here/verbs.sh"
# shellcheck source=/dev/null
. "$here/configs.sh"
