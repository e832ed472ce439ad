# shellcheck shell=bash
# dr-change: the designated router dies and comes back. Six FRR routers, router IDs 10.246.0.N.
#
#   area 0   lan          broadcast: r1 (designated), r2 (backup), r3, r4
#   area 1   r4r5 r4r5b   two equal point-to-point links side by side; r4 and r5 have a virtual link
#                         across them (OSPFv2)
#   area 2   r5r6         point-to-point, behind the virtual link (OSPFv3: area 1)
#
# r5 is a stub router (its links cost 65,535, so that what lies behind it costs more) and redistributes
# with metrics of 100,000 and 16,777,214. r3 redistributes 40 prefixes and withdraws them all.
#
# late.pcap begins in the middle, after all changes; cut.pcap, at the same time, keeps the first 104
# bytes of each packet.

net=10.246.0

build() {
    local n
    for n in 1 2 3 4 5 6; do router r$n; done
    lan lan r1 r2 r3 r4
    line r4r5 r4 to-r5 r5 to-r4
    line r4r5b r4 to-r5b r5 to-r4b
    line r5r6 r5 to-r6 r6 to-r5
    for n in 1 2 3 4 5 6; do address r$n lo "$net.$n/32" "2001:db8:f6::$n/128"; done
    for n in 1 2 3 4; do address r$n lan "10.96.0.$n/24" "2001:db8:96::$n/64"; done
    address r4 to-r5 10.96.45.1/30 2001:db8:96:45::4/64
    address r5 to-r4 10.96.45.2/30 2001:db8:96:45::5/64
    address r4 to-r5b 10.96.45.5/30 2001:db8:96:46::4/64
    address r5 to-r4b 10.96.45.6/30 2001:db8:96:46::5/64
    address r5 to-r6 10.96.56.1/30 2001:db8:96:56::5/64
    address r6 to-r5 10.96.56.2/30 2001:db8:96:56::6/64

    for n in 1 2 3; do
        {
            frr_head $n
            [ $n != 3 ] || for each in $(seq 40); do echo "ip route 172.20.$each.0/24 blackhole"; done
            [ $n != 3 ] || frr_ospf 'redistribute static'
            [ $n = 3 ] || frr_ospf
            frr_ospf6
            frr_loop 0
            frr_both lan 0 broadcast 10 "priority $((110 - n * 30))"
        } | config r$n
    done
    {
        frr_head 4
        frr_ospf "area 1 virtual-link $net.5" "area 1 virtual-link $net.5 hello-interval 2 dead-interval 8"
        frr_ospf6
        frr_loop 0
        frr_both lan 0 broadcast 10
        frr_both to-r5 1 point-to-point 10
        frr_both to-r5b 1 point-to-point 10
    } | config r4
    {
        frr_head 5
        printf 'ip route 192.0.2.0/24 blackhole tag 5\nip route 198.51.100.0/24 blackhole tag 6\n'
        printf 'ipv6 route 2001:db8:e005::/48 blackhole\nipv6 route 2001:db8:e006::/48 blackhole\n'
        printf 'ip prefix-list FIRST permit 192.0.2.0/24\nipv6 prefix-list FIRST permit 2001:db8:e005::/48\n'
        for n in ip ipv6; do
            printf 'route-map %s permit 10\n match %s address prefix-list FIRST\n set metric 100000\nexit\n' $n $n
            printf 'route-map %s permit 20\n set metric 16777214\nexit\n' $n
        done
        frr_ospf "area 1 virtual-link $net.4" "area 1 virtual-link $net.4 hello-interval 2 dead-interval 8" \
            'max-metric router-lsa administrative' 'redistribute static route-map ip'
        frr_ospf6 'redistribute static route-map ipv6'
        frr_loop 1
        frr_both to-r4 1 point-to-point 10
        frr_both to-r4b 1 point-to-point 10
        frr_v2 to-r6 2 point-to-point 10
        frr_v3 to-r6 1 point-to-point 65535
    } | config r5
    {
        frr_head 6
        frr_ospf
        frr_ospf6
        frr_loop 2 1
        frr_v2 to-r5 2 point-to-point 10
        frr_v3 to-r5 1 point-to-point 10
    } | config r6
}

all_full() {
    expect r1 3 3
    expect r2 3 3
    expect r3 2 2
    expect r4 5 4
    expect r5 4 3
    expect r6 1 1
    note 'all adjacencies are up'
}

events() {
    all_full
    settle 5
    note 'r1, the designated router, dies'
    crash r1 ospfd
    crash r1 ospf6d
    sleep 12
    note 'r1 is back'
    revive r1 ospfd
    revive r1 ospf6d
    # r2 is designated now and r3 or r4 its backup; r1 comes back as neither.
    sleep 16
    settle 5
    note 'r3 withdraws 40 externals'
    configure r3 'router ospf' 'no redistribute static'
    settle 5
    also late
    also cut -s 104
    note 'nothing happens but a cost of r6'
    sleep 6
    configure r6 'interface to-r5' 'ip ospf cost 12' 'ipv6 ospf6 cost 12'
    sleep 12
}
