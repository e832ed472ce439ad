# shellcheck shell=bash
# configs.sh: pieces of configurations, printed for `config`. A topology sets `net`, the first three
# bytes of its router IDs. All timers are 2 and 8 seconds.

# frr_head NUMBER
frr_head() { printf 'hostname r%s\nlog timestamp precision 6\n' "$1"; id=$net.$1; }

# frr_ospf [LINE...], frr_ospf6 [LINE...]: the process, with lines of its own
frr_ospf() {
    printf 'router ospf\n ospf router-id %s\n log-adjacency-changes detail\n timers throttle spf 0 50 200\n' "$id"
    [ $# -eq 0 ] || printf ' %s\n' "$@"
    echo exit
}
frr_ospf6() {
    printf 'router ospf6\n ospf6 router-id %s\n log-adjacency-changes detail\n timers throttle spf 0 50 200\n' "$id"
    [ $# -eq 0 ] || printf ' %s\n' "$@"
    echo exit
}

# frr_v2 INTERFACE AREA TYPE COST [LINE...]: OSPFv2 there; `frr_v3`: OSPFv3; `frr_both`: both,
# with the lines in each. The area comes last: FRR sends its first hello as soon as it has one.
frr_v2() {
    local name=$1 area=$2 type=$3 cost=$4
    shift 4
    printf 'interface %s\n ip ospf network %s\n ip ospf cost %s\n' "$name" "$type" "$cost"
    printf ' ip ospf hello-interval 2\n ip ospf dead-interval 8\n'
    [ $# -eq 0 ] || printf ' ip ospf %s\n' "$@"
    printf ' ip ospf area %s\nexit\n' "$area"
}
frr_v3() {
    local name=$1 area=$2 type=$3 cost=$4
    shift 4
    printf 'interface %s\n ipv6 ospf6 network %s\n ipv6 ospf6 cost %s\n' "$name" "$type" "$cost"
    printf ' ipv6 ospf6 hello-interval 2\n ipv6 ospf6 dead-interval 8\n'
    [ $# -eq 0 ] || printf ' ipv6 ospf6 %s\n' "$@"
    printf ' ipv6 ospf6 area %s\nexit\n' "$area"
}
frr_both() { frr_v2 "$@"; frr_v3 "$@"; }

# frr_loop AREA [V3-AREA]: the loopback, passive
frr_loop() {
    printf 'interface lo\n ip ospf area %s\n ip ospf passive\n ipv6 ospf6 area %s\n ipv6 ospf6 passive\nexit\n' \
        "$1" "${2:-$1}"
}

# bird_head NUMBER
bird_head() {
    id=$net.$1
    cat <<END
log stderr all;
router id $id;
protocol device { scan time 1; }
protocol kernel kernel4 { ipv4 { export all; }; merge paths yes; }
protocol kernel kernel6 { ipv6 { export all; }; merge paths yes; }
END
}

# bird_quick: the timers, within an interface's braces
bird_quick() { echo 'hello 2; dead 8;'; }

# bird_p2p INTERFACE COST [LINE...], bird_lan INTERFACE COST [LINE...], bird_stub INTERFACE COST
bird_p2p() { local n=$1 c=$2; shift 2; echo "interface \"$n\" { type ptp; cost $c; $(bird_quick) $* };"; }
bird_lan() { local n=$1 c=$2; shift 2; echo "interface \"$n\" { type broadcast; cost $c; $(bird_quick) $* };"; }
bird_stub() { echo "interface \"$1\" { stub yes; cost $2; };"; }

# bird_ospf 2|3 [LINE...]: the protocol ospf_v2 or ospf_v3, its areas on standard input
bird_ospf() {
    local version=$1 family=ipv4
    [ "$version" = 2 ] || family=ipv6
    shift
    printf 'protocol ospf v%s ospf_v%s {\n debug { states, events };\n ecmp yes;\n' "$version" "$version"
    [ $# -eq 0 ] || printf ' %s\n' "$@"
    case "$*" in *"$family"*) ;; *) printf ' %s { import all; export none; };\n' "$family" ;; esac
    sed 's/^/ /'
    echo '}'
}
