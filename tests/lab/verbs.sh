# shellcheck shell=bash
# verbs.sh: what a topology says. The verbs change what ground.sh holds.

note() { printf '%s %s\n' "$(date +%s.%6N)" "$*" | tee -a "$out/events.txt" >&2; }

inside() { local name=$1; shift; ip netns exec "$prefix-$name" "$@"; }
vty() { local name=$1; shift; vtysh --config_dir "$scratch/vtysh" -N "$prefix-$name" "$@"; }
birdcl_to() { local name=$1; shift; birdc -s "$scratch/$name.ctl" "$@" | sed 1d; }

# --- verbs for `build` ---

# router NAME [frr|bird [DAEMON...]]: a namespace with forwarding; DAEMONs as against static and both OSPFs
router() {
    local name=$1
    ip netns add "$prefix-$name"
    routers+=("$name")
    kind[$name]=${2:-frr}
    shift $(($# < 2 ? $# : 2))
    wanted[$name]=${*:-staticd ospfd ospf6d}
    inside "$name" sysctl -qw net.ipv4.ip_forward=1 net.ipv6.conf.all.forwarding=1 \
        net.ipv4.conf.all.rp_filter=0 net.ipv4.conf.default.rp_filter=0 \
        net.ipv6.conf.all.accept_dad=0 net.ipv6.conf.default.accept_dad=0 \
        net.ipv6.conf.all.keep_addr_on_down=1 net.ipv6.conf.default.keep_addr_on_down=1
    inside "$name" ip link set lo up
}

# OSPF over IPv4, over IPv6, and over IPv6 behind a fragment header.
readonly heard='ip proto 89 or ip6 proto 89 or (ip6[6] = 44 and ip6[40] = 89)'

# listen CAPTURE SEGMENT [TCPDUMP-OPTION...]
listen() {
    local log="$scratch/tcpdump-$1-$2" file="$scratch/pcap/$1/$2.pcap" at=${heard_at[$2]}
    shift 2
    mkdir -p "${file%/*}"
    : >"$log"
    ip netns exec "$prefix-${at% *}" tcpdump -Z root -U -s 0 -n -i "${at#* }" "$@" -w "$file" \
        "$heard" >"$log" 2>&1 </dev/null &
    tcpdumps+=("$!")
    until grep -q 'listening on' "$log"; do sleep 0.1; done
}

# segment NAME NAMESPACE INTERFACE: from now on captured
segment() {
    segments+=("$1")
    heard_at[$1]="$2 $3"
    listen all "$1"
}

stands_on() {
    printf '%s\t%s\t%s\t%s\n' "$1" "$2" "$3" "$(inside "$2" cat "/sys/class/net/$3/ifindex")" \
        >>"$out/segments.tsv"
}

# mac SEGMENT-NUMBER INTERFACE-NUMBER: addresses that are the same on each run
mac() { printf '02:00:00:01:%02x:%02x' "$1" "$2"; }

# line SEGMENT ROUTER INTERFACE ROUTER INTERFACE: a point-to-point link
line() {
    local n=${#segments[@]}
    ip -n "$prefix-$2" link add name "$3" address "$(mac "$n" 1)" type veth \
        peer name "$5" address "$(mac "$n" 2)" netns "$prefix-$4"
    inside "$2" ip link set dev "$3" up
    inside "$4" ip link set dev "$5" up
    stands_on "$1" "$2" "$3"
    stands_on "$1" "$4" "$5"
    segment "$1" "$2" "$3"
}

need_switch() { ip netns list | grep -q "^$prefix-switch" || ip netns add "$prefix-switch"; }

# lan SEGMENT ROUTER...: a bridge; each router's interface has the segment's name
lan() {
    local segment=$1 name n=${#segments[@]} i=0
    shift
    need_switch
    ip -n "$prefix-switch" link add name "$segment" type bridge mcast_snooping 0 stp_state 0
    ip -n "$prefix-switch" link set dev "$segment" up
    for name in "$@"; do
        i=$((i + 1))
        ip -n "$prefix-$name" link add name "$segment" address "$(mac "$n" "$i")" type veth \
            peer name "$segment-$name" netns "$prefix-switch"
        ip -n "$prefix-switch" link set dev "$segment-$name" master "$segment" up
        inside "$name" ip link set dev "$segment" up
        stands_on "$segment" "$name" "$segment"
    done
    segment "$segment" switch "$segment"
}

# stub ROUTER INTERFACE: an interface that is up and leads nowhere
stub() {
    need_switch
    ip -n "$prefix-$1" link add name "$2" type veth peer name "$2-$1" netns "$prefix-switch"
    ip -n "$prefix-switch" link set dev "$2-$1" up
    inside "$1" ip link set dev "$2" up
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
config() { mkdir -p "$out/routers/$1"; cat >"$out/routers/$1/${kind[$1]}.conf"; }

# --- verbs for `events` ---

# configure ROUTER LINE...: configuration lines of an FRR router
configure() {
    local name=$1 arguments=(-c 'configure terminal') each
    shift
    for each in "$@"; do arguments+=(-c "$each"); done
    vty "$name" "${arguments[@]}" >/dev/null
}

full() { # ROUTER 2|3: its neighbours in state Full
    if [ "${kind[$1]}" = bird ]; then
        local proto count=0
        for proto in $(ospf_protocols "$1" "$2"); do
            count=$((count + $(birdcl_to "$1" show ospf neighbors "$proto" | grep -c 'Full/' || true)))
        done
        echo "$count"
        return
    fi
    local command='show ip ospf neighbor json'
    [ "$2" = 2 ] || command='show ipv6 ospf6 neighbor json'
    { vty "$1" -c "$command" 2>/dev/null || true; } | jq -s \
        '[.. | objects | (.nbrState // .state) // empty | select(test("^Full"))] | length' \
        2>/dev/null || echo 0
}

# expect ROUTER V2 V3: waits until it has so many neighbours in state Full
expect() {
    local tries
    for tries in $(seq "${LAB_LIMIT:-90}"); do
        [ "$(full "$1" 2)" = "$2" ] && [ "$(full "$1" 3)" = "$3" ] && return 0
        sleep 1
    done
    echo "$1 has $(full "$1" 2) and $(full "$1" 3) neighbours, not $2 and $3" >&2
    if [ "${kind[$1]}" = bird ]; then birdcl_to "$1" show ospf neighbors >&2
    else vty "$1" -c 'show ip ospf neighbor' -c 'show ipv6 ospf6 neighbor' >&2; fi
    return 1
}

# settle SECONDS: waits until no database has changed for so long
settle() {
    local before='' now since=$SECONDS start=$SECONDS name proto
    while [ $((SECONDS - since)) -lt "$1" ]; do
        [ $((SECONDS - start)) -lt 150 ] || { echo 'the databases do not settle' >&2; return 1; }
        # Without the ages: before FRR's sequence numbers, behind BIRD's.
        now=$(for name in "${routers[@]}"; do
            if [ "${kind[$name]}" = bird ]; then
                for proto in $(ospf_protocols "$name" 2) $(ospf_protocols "$name" 3); do
                    birdcl_to "$name" show ospf lsadb "$proto"
                done
            else
                vty "$name" -c 'show ip ospf database' 2>/dev/null || true
                vty "$name" -c 'show ipv6 ospf6 database' 2>/dev/null || true
            fi
        done | sed -E 's/ +[0-9]+ +((0x)?8[0-9a-f]{7})/ \1/; s/ (8[0-9a-f]{7}) +[0-9]+ / \1 /' |
            sha256sum)
        if [ "$now" != "$before" ]; then before=$now since=$SECONDS; fi
        sleep 1
    done
    note "unchanged for $1 s"
}

# also CAPTURE [TCPDUMP-OPTION...]: writes CAPTURE.pcap as well, from now on
also() {
    local name=$1 each
    shift
    captures+=("$name")
    for each in "${segments[@]}"; do listen "$name" "$each" "$@"; done
    note "$name.pcap begins"
}

# port SEGMENT ROUTER BRIDGE-OPTION...: changes the router's port of that bridge, or `up`, `down`
port() {
    local segment=$1 name=$2
    shift 2
    case $1 in
        up | down) ip -n "$prefix-switch" link set dev "$segment-$name" "$1" ;;
        *) ip netns exec "$prefix-switch" bridge link set dev "$segment-$name" "$@" ;;
    esac
}

# crash ROUTER DAEMON: ends a daemon without a word
crash() {
    kill -KILL "${process[$1 $2]}"
    unset "process[$1 $2]"
}

# revive ROUTER DAEMON: starts it again with the router's configuration
revive() {
    if [ "$2" = bird ]; then configure_router "$1"; return; fi
    start_daemon "$1" "$2"
    vty "$1" -f "$out/routers/$1/frr.conf" >"$scratch/$1.config" 2>&1 || true
}

# --- starting and ending ---

start_daemon() { # ROUTER DAEMON
    ip netns exec "$prefix-$1" "$frr/$2" -N "$prefix-$1" -f "$scratch/empty.conf" \
        -i "$sockets/$prefix-$1/$2.pid" -P 0 --log stdout >>"$scratch/$1-$2.log" 2>&1 </dev/null &
    process[$1 $2]=$!
    until vty "$1" -d "$2" -c 'show version' >/dev/null 2>&1; do sleep 0.1; done
}

start_router() {
    local name=$1 daemon
    [ "${kind[$name]}" = frr ] || return 0
    install -d -o frr -g frr -m 0755 "$sockets/$prefix-$name"
    mkdir -p "$scratch/vtysh/$prefix-$name"
    : >"$scratch/vtysh/$prefix-$name/vtysh.conf"
    for daemon in zebra ${wanted[$name]}; do start_daemon "$name" "$daemon"; done
}

configure_router() {
    local name=$1
    if [ "${kind[$name]}" = bird ]; then
        ip netns exec "$prefix-$name" bird -f -c "$out/routers/$name/bird.conf" \
            -s "$scratch/$name.ctl" -P "$scratch/$name.pid" >>"$scratch/$name-bird.log" 2>&1 </dev/null &
        process[$name bird]=$!
        until birdcl_to "$name" show status >/dev/null 2>&1; do
            kill -0 "${process[$name bird]}" || { cat "$scratch/$name-bird.log" >&2; exit 1; }
            sleep 0.1
        done
        return
    fi
    vty "$name" -f "$out/routers/$name/frr.conf" >"$scratch/$name.config" 2>&1 || true
    if grep '^line [0-9]*: ' "$scratch/$name.config"; then echo "of $name" >&2; exit 1; fi
}

end_captures() {
    local pid capture each files
    for pid in "${tcpdumps[@]}"; do kill -INT "$pid"; done
    wait "${tcpdumps[@]}" || true
    tcpdumps=()
    for capture in "${captures[@]}"; do
        files=()
        for each in "${segments[@]}"; do files+=("$scratch/pcap/$capture/$each.pcap"); done
        mergecap -F pcap -w "$out/$capture.pcap" "${files[@]}"
        each=tshark.json.gz
        [ "$capture" = all ] || each=$capture.tshark.json.gz
        tshark -r "$out/$capture.pcap" -Y ospf -T json -J 'frame ip ipv6 ospf' --no-duplicate-keys \
            2>/dev/null | gzip -9n >"$out/$each"
    done
}
