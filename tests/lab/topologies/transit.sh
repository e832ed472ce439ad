# shellcheck shell=bash
# transit: what a campus seldom has. Eight FRR routers, router IDs 10.254.0.N.
#
#   area 0   hub        non-broadcast in OSPFv2 (broadcast in OSPFv3): r1, r2, r3
#   area 1   r2r5 r5r4  point-to-point; r2 and r4 have a virtual link across it (OSPFv2)
#   area 2   r1r6       point-to-point, NSSA; r6 redistributes, r1 translates
#   area 3   r4r7       point-to-point, behind the virtual link (OSPFv3: area 1, which has none)
#   area 4   r3r8       point-to-point, totally stubby
#
# r3 redistributes 300 IPv4 and 100 IPv6 statics. While the capture runs, r6 withdraws some of its
# externals, r5 changes a cost, the link r4r7 fails and comes back, and r2 loses its place as
# designated router.

build() {
    local n
    for n in 1 2 3 4 5 6 7 8; do router "r$n"; done
    lan hub r1 r2 r3
    line r2r5 r2 to-r5 r5 to-r2
    line r5r4 r5 to-r4 r4 to-r5
    line r1r6 r1 to-r6 r6 to-r1
    line r4r7 r4 to-r7 r7 to-r4
    line r3r8 r3 to-r8 r8 to-r3

    for n in 1 2 3; do address "r$n" hub "10.100.0.$n/24" "2001:db8:100::$n/64"; done
    for n in 1 2 3 4 5 6 7 8; do address "r$n" lo "10.254.0.$n/32" "2001:db8:fe::$n/128"; done
    address r2 to-r5 10.101.25.2/30 2001:db8:101:25::2/64
    address r5 to-r2 10.101.25.1/30 2001:db8:101:25::5/64
    address r5 to-r4 10.101.54.1/30 2001:db8:101:54::5/64
    address r4 to-r5 10.101.54.2/30 2001:db8:101:54::4/64
    address r1 to-r6 10.102.16.1/30 2001:db8:102:16::1/64
    address r6 to-r1 10.102.16.2/30 2001:db8:102:16::6/64
    address r4 to-r7 10.103.47.1/30 2001:db8:103:47::4/64
    address r7 to-r4 10.103.47.2/30 2001:db8:103:47::7/64
    address r3 to-r8 10.104.38.1/30 2001:db8:104:38::3/64
    address r8 to-r3 10.104.38.2/30 2001:db8:104:38::8/64

    { begin 1; areas 'area 2 nssa'; echo ' neighbor 10.100.0.2 poll-interval 5'
      echo ' neighbor 10.100.0.3 poll-interval 5'; echo exit; areas6 1 'area 2 nssa'
      hub 1 50; loop 0; p2p to-r6 2 2 10; } | config r1
    { begin 2; areas 'area 1 virtual-link 10.254.0.4'; echo ' neighbor 10.100.0.1 poll-interval 5'
      echo ' neighbor 10.100.0.3 poll-interval 5'; echo exit; areas6 2
      hub 2 90; loop 0; p2p to-r5 1 1 10; } | config r2
    { begin 3; statics; areas 'area 4 stub no-summary' 'area 4 default-cost 9' 'redistribute static'
      echo ' neighbor 10.100.0.1 poll-interval 5'; echo ' neighbor 10.100.0.2 poll-interval 5'
      echo exit; areas6 3 'area 4 stub no-summary' 'redistribute static'
      hub 3 10; loop 0; p2p to-r8 4 4 10; } | config r3
    { begin 4; areas 'area 1 virtual-link 10.254.0.2'; echo exit; areas6 4
      loop 3 1; p2p to-r5 1 1 10; p2p to-r7 3 1 10; } | config r4
    { begin 5; areas; echo exit; areas6 5
      loop 1; p2p to-r2 1 1 10; p2p to-r4 1 1 10; } | config r5
    { begin 6
      for n in 1 2 3 4 5 6; do
          echo "ip route 198.51.100.$((n * 16))/28 blackhole tag 6$n"
          echo "ipv6 route 2001:db8:6$n::/48 blackhole"
      done
      areas 'area 2 nssa' 'redistribute static metric 60 metric-type 1'; echo exit
      areas6 6 'area 2 nssa' 'redistribute static'
      loop 2; p2p to-r1 2 2 10; } | config r6
    { begin 7; areas; echo exit; areas6 7; loop 3 1; p2p to-r4 3 1 10; } | config r7
    { begin 8; areas 'area 4 stub'; echo exit; areas6 8 'area 4 stub'
      loop 4; p2p to-r3 4 4 10; } | config r8
}

# Pieces of a configuration.
begin() { echo "hostname r$1"; id=10.254.0.$1; }
areas() { # LINE...: opens `router ospf`, left open
    echo 'router ospf'
    echo " ospf router-id $id"
    local each
    for each in "$@"; do echo " $each"; done
}
areas6() { # NUMBER LINE...
    echo 'router ospf6'
    echo " ospf6 router-id 10.254.0.$1"
    local each
    shift
    for each in "$@"; do echo " $each"; done
    echo exit
}
hub() { # NUMBER PRIORITY
    cat <<END
interface hub
 ip ospf area 0
 ip ospf network non-broadcast
 ip ospf priority $2
 ip ospf hello-interval 2
 ip ospf dead-interval 8
 ipv6 ospf6 area 0
 ipv6 ospf6 priority $2
 ipv6 ospf6 hello-interval 2
 ipv6 ospf6 dead-interval 8
exit
END
}
loop() { # AREA [V3-AREA]
    printf 'interface lo\n ip ospf area %s\n ip ospf passive\n ipv6 ospf6 area %s\nexit\n' "$1" "${2:-$1}"
}
p2p() { # INTERFACE AREA V3-AREA COST
    cat <<END
interface $1
 ip ospf area $2
 ip ospf network point-to-point
 ip ospf cost $4
 ip ospf hello-interval 2
 ip ospf dead-interval 8
 ipv6 ospf6 area $3
 ipv6 ospf6 network point-to-point
 ipv6 ospf6 cost $4
 ipv6 ospf6 hello-interval 2
 ipv6 ospf6 dead-interval 8
exit
END
}
statics() {
    local n
    for n in $(seq 0 299); do echo "ip route 172.$((16 + n / 256)).$((n % 256)).0/24 blackhole tag $((n + 1))"; done
    for n in $(seq 0 99); do printf 'ipv6 route 2001:db8:e%03x::/48 blackhole\n' "$n"; done
}

events() {
    all_full
    note 'all adjacencies are up'
    settle 5
    note 'r6 withdraws two externals of each version'
    configure r6 'no ip route 198.51.100.16/28 blackhole tag 61' \
        'no ip route 198.51.100.32/28 blackhole tag 62' 'no ipv6 route 2001:db8:61::/48 blackhole' \
        'no ipv6 route 2001:db8:62::/48 blackhole'
    note 'r5 changes a cost'
    configure r5 'interface to-r4' 'ip ospf cost 77' 'ipv6 ospf6 cost 77'
    note 'r4r7 fails'
    inside r4 ip link set to-r7 down
    sleep 10
    note 'r4r7 is back'
    inside r4 ip link set to-r7 up
    inside r4 ip -6 addr replace 2001:db8:103:47::4/64 dev to-r7 nodad
    note 'r2 leaves the hub and comes back'
    inside r2 ip link set hub down
    sleep 10
    inside r2 ip link set hub up
    inside r2 ip -6 addr replace 2001:db8:100::2/64 dev hub nodad
    all_full
    note 'all adjacencies are up again'
    settle 8
}

all_full() { # with the virtual link, which counts for OSPFv2
    expect r1 3 3
    expect r2 4 3
    expect r3 3 3
    expect r4 3 2
    expect r5 2 2
    expect r6 1 1
    expect r7 1 1
    expect r8 1 1
}
