# shellcheck shell=bash
# ageing: what is left of a router that dies and does not come back, until its LSAs age out an hour
# later. Router IDs 10.239.0.N, OSPFv2 and OSPFv3, area 0, the usual timers, listened to for 62 minutes.
#
#   r1b2 b2r3   point-to-point: r1 (FRR), b2 (BIRD), r3 (FRR), which has an external and dies

net=10.239.0

build() {
    local n
    router r1
    router b2 bird
    router r3
    line r1b2 r1 to-b2 b2 to-r1
    line b2r3 b2 to-r3 r3 to-b2
    address r1 lo 10.239.0.1/32 2001:db8:ef::1/128
    address b2 lo 10.239.0.2/32 2001:db8:ef::2/128
    address r3 lo 10.239.0.3/32 2001:db8:ef::3/128
    address r1 to-b2 10.23.12.1/30 2001:db8:23:12::1/64
    address b2 to-r1 10.23.12.2/30 2001:db8:23:12::2/64
    address b2 to-r3 10.23.23.1/30 2001:db8:23:23::2/64
    address r3 to-b2 10.23.23.2/30 2001:db8:23:23::3/64
    for n in 1 3; do
        {
            frr_head $n
            if [ $n = 3 ]; then
                printf 'ip route 192.0.2.0/24 blackhole\nipv6 route 2001:db8:e0::/48 blackhole\n'
                frr_ospf 'redistribute static'
                frr_ospf6 'redistribute static'
            else
                frr_ospf
                frr_ospf6
            fi
            frr_loop 0
            cat <<'END'
interface to-b2
 ip ospf area 0
 ip ospf network point-to-point
 ipv6 ospf6 area 0
 ipv6 ospf6 network point-to-point
exit
END
        } | config r$n
    done
    {
        bird_head 2
        for n in 2 3; do
            bird_ospf $n <<END
area 0 {
    $(bird_stub lo 1)
    interface "to-r1" { type ptp; cost 10; hello 10; dead 40; };
    interface "to-r3" { type ptp; cost 10; hello 10; dead 40; };
};
END
        done
    } | config b2
}

events() {
    expect r1 1 1
    expect b2 2 2
    expect r3 1 1
    settle 5
    note 'r3 dies'
    crash r3 ospfd
    crash r3 ospf6d
    note 'nothing happens for 61 minutes'
    sleep 3680
    note 'over'
}
