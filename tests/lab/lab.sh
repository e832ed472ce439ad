#!/usr/bin/env bash
# lab.sh TOPOLOGY OUTDIR: runs an OSPF network of FRR routers in network namespaces, records every
# OSPF packet on every link, and asks each router at the end what it holds.
#
# TOPOLOGY is a file beside this script (transit.sh) that defines two functions, `build` and
# `events`, out of the verbs below. Needs root, frr, tcpdump, mergecap, iproute2 and jq. OUTDIR gets
# all.pcap, pcap/SEGMENT.pcap, routers/NAME/, segments.tsv and events.txt.
# Only processes and namespaces that it made are ended.
set -euo pipefail
export LC_ALL=C TZ=UTC

here=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
[ $# -eq 2 ] || { echo "usage: lab.sh TOPOLOGY OUTDIR" >&2; exit 2; }
topology=$1
mkdir -p "$2"
out=$(cd -- "$2" && pwd)
prefix="ht$$"
scratch=$(mktemp -d)
chmod 755 "$scratch"
sockets=/var/run/frr
frr=${FRR_BIN:-/usr/lib/frr}
routers=()
segments=()
tcpdumps=()
daemons=()
: >"$out/events.txt"
printf 'segment\trouter\tinterface\tifindex\n' >"$out/segments.tsv"

note() { printf '%s %s\n' "$(date +%s.%6N)" "$*" | tee -a "$out/events.txt" >&2; }

finish() {
    set +e
    for pid in "${tcpdumps[@]}" "${daemons[@]}"; do kill "$pid" 2>/dev/null; done
    sleep 1
    for pid in "${tcpdumps[@]}" "${daemons[@]}"; do kill -KILL "$pid" 2>/dev/null; done
    for name in "${routers[@]}" switch; do
        ip netns del "$prefix-$name" 2>/dev/null
        rm -rf "${sockets:?}/$prefix-$name"
    done
    rm -rf "$scratch"
}
trap finish EXIT

inside() { local name=$1; shift; ip netns exec "$prefix-$name" "$@"; }
vty() { local name=$1; shift; vtysh --config_dir "$scratch/vtysh" -N "$prefix-$name" "$@"; }

# --- verbs for `build` ---

# router NAME: a namespace with forwarding
router() {
    ip netns add "$prefix-$1"
    routers+=("$1")
    inside "$1" sysctl -qw net.ipv4.ip_forward=1 net.ipv6.conf.all.forwarding=1 \
        net.ipv4.conf.all.rp_filter=0 net.ipv4.conf.default.rp_filter=0 \
        net.ipv6.conf.all.accept_dad=0 net.ipv6.conf.default.accept_dad=0
    inside "$1" ip link set lo up
}

# capture SEGMENT NAMESPACE INTERFACE
capture() {
    mkdir -p "$out/pcap"
    : >"$scratch/tcpdump-$1"
    ip netns exec "$prefix-$2" tcpdump -Z root -U -s 0 -n -i "$3" -w "$out/pcap/$1.pcap" \
        'ip proto 89 or ip6 proto 89' >"$scratch/tcpdump-$1" 2>&1 </dev/null &
    tcpdumps+=("$!")
    segments+=("$1")
    until grep -q 'listening on' "$scratch/tcpdump-$1"; do sleep 0.1; done
}

stands_on() {
    printf '%s\t%s\t%s\t%s\n' "$1" "$2" "$3" "$(inside "$2" cat "/sys/class/net/$3/ifindex")" \
        >>"$out/segments.tsv"
}

# mac ROUTER-NUMBER INTERFACE-NUMBER: addresses that are the same on each run
mac() { printf '02:00:00:01:%02x:%02x' "$1" "$2"; }

# line SEGMENT ROUTER INTERFACE ROUTER INTERFACE: a point-to-point link
line() {
    local n=${#segments[@]}
    ip -n "$prefix-$2" link add "$3" address "$(mac "$n" 1)" type veth \
        peer name "$5" address "$(mac "$n" 2)" netns "$prefix-$4"
    inside "$2" ip link set "$3" up
    inside "$4" ip link set "$5" up
    stands_on "$1" "$2" "$3"
    stands_on "$1" "$4" "$5"
    capture "$1" "$2" "$3"
}

# lan SEGMENT ROUTER...: a bridge; each router's interface has the segment's name
lan() {
    local segment=$1 name n=${#segments[@]} i=0
    shift
    ip netns list | grep -q "^$prefix-switch" || ip netns add "$prefix-switch"
    ip -n "$prefix-switch" link add "$segment" type bridge mcast_snooping 0 stp_state 0
    ip -n "$prefix-switch" link set "$segment" up
    for name in "$@"; do
        i=$((i + 1))
        ip -n "$prefix-$name" link add "$segment" address "$(mac "$n" "$i")" type veth \
            peer name "$segment-$name" netns "$prefix-switch"
        ip -n "$prefix-switch" link set "$segment-$name" master "$segment" up
        inside "$name" ip link set "$segment" up
        stands_on "$segment" "$name" "$segment"
    done
    capture "$segment" switch "$segment"
}

# address ROUTER INTERFACE ADDRESS...
address() {
    local name=$1 interface=$2 each
    shift 2
    for each in "$@"; do
        case $each in
            *:*) inside "$name" ip -6 addr add "$each" dev "$interface" nodad ;;
            *) inside "$name" ip addr add "$each" dev "$interface" ;;
        esac
    done
}

# config ROUTER: its configuration, on standard input
config() { mkdir -p "$out/routers/$1"; cat >"$out/routers/$1/frr.conf"; }

# --- verbs for `events` ---

configure() {
    local name=$1 arguments=(-c 'configure terminal') each
    shift
    for each in "$@"; do arguments+=(-c "$each"); done
    vty "$name" "${arguments[@]}" >/dev/null
}

full() { # ROUTER 2|3: its neighbours in state Full
    local command='show ip ospf neighbor json'
    [ "$2" = 2 ] || command='show ipv6 ospf6 neighbor json'
    vty "$1" -c "$command" 2>/dev/null |
        jq '[.. | objects | (.nbrState // .state) // empty | select(test("^Full"))] | length' 2>/dev/null
}

# expect ROUTER V2 V3: waits until it has so many neighbours in state Full
expect() {
    local tries
    for tries in $(seq 120); do
        [ "$(full "$1" 2)" = "$2" ] && [ "$(full "$1" 3)" = "$3" ] && return 0
        sleep 1
    done
    echo "$1 has $(full "$1" 2) and $(full "$1" 3) neighbours, not $2 and $3" >&2
    vty "$1" -c 'show ip ospf neighbor' -c 'show ipv6 ospf6 neighbor' >&2
    return 1
}

# settle SECONDS: waits until no database has changed for so long
settle() {
    local before='' now since=$SECONDS start=$SECONDS name
    while [ $((SECONDS - since)) -lt "$1" ]; do
        [ $((SECONDS - start)) -lt 120 ] || { echo 'the databases do not settle' >&2; return 1; }
        now=$(for name in "${routers[@]}"; do
            vty "$name" -c 'show ip ospf database' -c 'show ipv6 ospf6 database'
        done | sed -E 's/ +[0-9]+ +((0x)?8[0-9a-f]{7})/ \1/' | sha256sum)
        if [ "$now" != "$before" ]; then before=$now since=$SECONDS; fi
        sleep 1
    done
    note "unchanged for $1 s"
}

# --- the run ---

start_daemon() { # ROUTER DAEMON
    ip netns exec "$prefix-$1" "$frr/$2" -N "$prefix-$1" -f "$scratch/empty.conf" \
        -i "$sockets/$prefix-$1/$2.pid" -P 0 --log stdout >"$scratch/$1-$2.log" 2>&1 </dev/null &
    daemons+=("$!")
    until vty "$1" -d "$2" -c 'show version' >/dev/null 2>&1; do sleep 0.1; done
}

# shellcheck source=/dev/null
. "$here/$topology.sh"
: >"$scratch/empty.conf"
chmod 644 "$scratch/empty.conf"
build
for name in "${routers[@]}"; do
    install -d -o frr -g frr -m 0755 "$sockets/$prefix-$name"
    mkdir -p "$scratch/vtysh/$prefix-$name"
    : >"$scratch/vtysh/$prefix-$name/vtysh.conf"
    for daemon in zebra staticd ospfd ospf6d; do start_daemon "$name" "$daemon"; done
done
note 'daemons are up'
for name in "${routers[@]}"; do
    vty "$name" -f "$out/routers/$name/frr.conf" >"$scratch/$name.config" 2>&1 || true
    if grep -n '^line [0-9]*: ' "$scratch/$name.config"; then exit 1; fi
done
events

note 'asking the routers'
for name in "${routers[@]}"; do
    ask() { vty "$name" -c "$2" | gzip -9n >"$out/routers/$name/$1.json.gz"; }
    ask ip-ospf 'show ip ospf json'
    ask ip-ospf-database 'show ip ospf database json'
    ask ip-ospf-neighbor-detail 'show ip ospf neighbor detail json'
    ask ipv6-ospf6-database-detail 'show ipv6 ospf6 database detail json'
    ask ipv6-ospf6-neighbor-detail 'show ipv6 ospf6 neighbor detail json'
done
note 'asked'
for pid in "${tcpdumps[@]}"; do kill -INT "$pid"; done
wait "${tcpdumps[@]}" || true
tcpdumps=()
captures=()
for segment in "${segments[@]}"; do captures+=("$out/pcap/$segment.pcap"); done
mergecap -F pcap -w "$out/all.pcap" "${captures[@]}"
