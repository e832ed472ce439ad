# shellcheck shell=bash
# nssa: an NSSA with two border routers and a totally stubby area. Router IDs 10.251.0.N, OSPFv2 and
# OSPFv3 on the same links.
#
#   area 0   core       broadcast: r1 (FRR), b2 (BIRD), r3 (FRR)
#   area 1   r1r4 b2r5  point-to-point, NSSA; border routers r1 and b2, of which b2 translates (the
#                       higher router ID) and originates a type-7 default
#            site       broadcast: r4, r5
#   area 2   r3r6       point-to-point, totally stubby
#
# r4 redistributes statics: through 10.51.45.99 on the site (that is then the forwarding address) and
# into nowhere (the forwarding address is one of its own). r5 redistributes one of the same prefixes.
# r1 redistributes too: type 5 for area 0 and, being a border router, type 7 without the P bit. b2
# aggregates 203.0.113.0/24 and hides 198.51.100.0/24.

net=10.251.0

build() {
    local n
    router r1; router b2 bird; router r3; router r4; router r5; router r6
    lan core r1 b2 r3
    line r1r4 r1 to-r4 r4 to-r1
    line b2r5 b2 to-r5 r5 to-b2
    lan site r4 r5
    line r3r6 r3 to-r6 r6 to-r3

    for n in r1 b2 r3 r4 r5 r6; do
        address $n lo "$net.${n#?}/32" "2001:db8:fb::${n#?}/128"
    done
    for n in r1 b2 r3; do address $n core "10.50.0.${n#?}/24" "2001:db8:50::${n#?}/64"; done
    for n in r4 r5; do address $n site "10.51.45.${n#?}/24" "2001:db8:51:45::${n#?}/64"; done
    address r1 to-r4 10.51.14.1/30 2001:db8:51:14::1/64
    address r4 to-r1 10.51.14.2/30 2001:db8:51:14::4/64
    address b2 to-r5 10.51.25.1/30 2001:db8:51:25::2/64
    address r5 to-b2 10.51.25.2/30 2001:db8:51:25::5/64
    address r3 to-r6 10.52.36.1/30 2001:db8:52:36::3/64
    address r6 to-r3 10.52.36.2/30 2001:db8:52:36::6/64

    {
        frr_head 1
        echo 'ip route 192.0.2.0/25 blackhole tag 11'
        echo 'ipv6 route 2001:db8:e011::/48 blackhole tag 11'
        frr_ospf 'area 1 nssa' 'area 1 range 10.51.0.0/16' 'redistribute static metric 20'
        frr_ospf6 'area 0.0.0.1 nssa' 'redistribute static metric 20'
        frr_loop 0
        frr_both core 0 broadcast 10 'priority 9'
        frr_both to-r4 1 point-to-point 10
    } | config r1
    {
        bird_head 2
        bird_ospf 2 <<END
area 0 { $(bird_stub lo 1) $(bird_lan core 10 'priority 5;') };
area 1 {
 nssa; summary yes; default nssa yes; default cost2 77; networks { 10.51.0.0/16; };
 external { 203.0.113.0/24 tag 2113; 198.51.100.0/24 hidden; };
 $(bird_p2p to-r5 10)
};
END
        bird_ospf 3 <<END
area 0 { $(bird_stub lo 1) $(bird_lan core 10 'priority 5;') };
area 1 { nssa; summary yes; default nssa yes; default cost2 77; $(bird_p2p to-r5 10) };
END
    } | config b2
    {
        frr_head 3
        frr_ospf 'area 2 stub no-summary' 'area 2 default-cost 9'
        frr_ospf6 'area 0.0.0.2 stub no-summary'
        frr_loop 0
        frr_both core 0 broadcast 10
        frr_both to-r6 2 point-to-point 10
    } | config r3
    {
        frr_head 4
        cat <<'END'
ip route 100.64.0.0/24 10.51.45.99 tag 41
ip route 100.64.1.0/24 10.51.45.99 tag 42
ip route 100.64.2.0/24 blackhole tag 43
ip route 203.0.113.0/26 blackhole
ip route 203.0.113.64/26 blackhole
ip route 198.51.100.0/25 blackhole
ipv6 route 2001:db8:e040::/48 2001:db8:51:45::99 tag 41
ipv6 route 2001:db8:e042::/48 blackhole tag 43
route-map OUT permit 10
 match tag 41
 set metric 50
 set metric-type type-1
exit
route-map OUT permit 20
 set metric 60
exit
END
        frr_ospf 'area 1 nssa'
        frr_ospf6 'area 0.0.0.1 nssa'
        frr_loop 1
        frr_both to-r1 1 point-to-point 10
        frr_both site 1 broadcast 10 'priority 9'
        # Last, since the network of the next hop must run OSPF by then.
        frr_ospf 'redistribute static route-map OUT'
        frr_ospf6 'redistribute static route-map OUT'
    } | config r4
    {
        frr_head 5
        echo 'ip route 100.64.2.0/24 blackhole tag 53'
        echo 'ipv6 route 2001:db8:e042::/48 blackhole tag 53'
        frr_ospf 'area 1 nssa' 'redistribute static metric 60'
        frr_ospf6 'area 0.0.0.1 nssa' 'redistribute static metric 60'
        frr_loop 1
        frr_both to-b2 1 point-to-point 10
        frr_both site 1 broadcast 10
    } | config r5
    {
        frr_head 6
        frr_ospf 'area 2 stub'
        frr_ospf6 'area 0.0.0.2 stub'
        frr_loop 2
        frr_both to-r3 2 point-to-point 10
    } | config r6
}

events() {
    expect r1 3 3
    expect b2 3 3
    expect r3 3 3
    expect r4 2 2
    expect r5 2 2
    expect r6 1 1
    note 'all adjacencies are up'
    settle 8
    note 'r4 withdraws 100.64.1.0/24'
    configure r4 'no ip route 100.64.1.0/24 10.51.45.99 tag 42'
    settle 6
}
