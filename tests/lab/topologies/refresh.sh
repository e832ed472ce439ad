# shellcheck shell=bash
# refresh: the half-hourly refresh of every LSA. One FRR and one BIRD router, router IDs 10.250.0.N,
# OSPFv2 and OSPFv3, with the usual timers, listened to for 31 minutes.
#
#   area 0   r1b2   point-to-point: r1 (FRR), b2 (BIRD)

net=10.250.0

build() {
    router r1
    router b2 bird
    line r1b2 r1 to-b2 b2 to-r1
    address r1 lo 10.250.0.1/32 2001:db8:fa::1/128
    address b2 lo 10.250.0.2/32 2001:db8:fa::2/128
    address r1 to-b2 10.25.12.1/30 2001:db8:25:12::1/64
    address b2 to-r1 10.25.12.2/30 2001:db8:25:12::2/64
    {
        frr_head 1
        echo 'ip route 192.0.2.0/24 blackhole'
        frr_ospf 'redistribute static'
        frr_ospf6
        frr_loop 0
        cat <<'END'
interface to-b2
 ip ospf area 0
 ip ospf network point-to-point
 ipv6 ospf6 area 0
 ipv6 ospf6 network point-to-point
exit
END
    } | config r1
    {
        bird_head 2
        for n in 2 3; do
            bird_ospf $n <<END
area 0 { $(bird_stub lo 1) interface "to-r1" { type ptp; cost 10; hello 10; dead 40; }; };
END
        done
    } | config b2
}

events() {
    expect r1 1 1
    expect b2 1 1
    settle 5
    note 'nothing happens for 31 minutes'
    sleep 1860
    note 'over'
}
