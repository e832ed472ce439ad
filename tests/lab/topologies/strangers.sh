# shellcheck shell=bash
# strangers: one link on which two routers speak OSPFv3 past each other, r1 in instance 0 and r2 in
# instance 1, and no OSPFv2. FRR, router IDs 10.241.0.N, area 0, point-to-point.

net=10.241.0

build() {
    local n
    router r1 frr ospf6d
    router r2 frr ospf6d
    line link r1 to-r2 r2 to-r1
    address r1 to-r2 2001:db8:93::1/64
    address r2 to-r1 2001:db8:93::2/64
    for n in 1 2; do
        {
            frr_head $n
            frr_ospf6
            frr_v3 to-r$((3 - n)) 0 point-to-point 10 "instance-id $((n - 1))"
        } | config r$n
    done
}

events() {
    note 'each is alone'
    sleep 14
}
