# shellcheck shell=bash
# sameid: two routers with one router ID that are not neighbours, so that each takes the other's LSAs
# for its own. FRR, OSPFv2 and OSPFv3, area 0, point-to-point links in a row.
#
#   r1r2 r2r3 r3r4   r1 and r4 both are 10.243.0.14; r2 and r3 are 10.243.0.2 and 10.243.0.3

net=10.243.0

build() {
    local n
    for n in 1 2 3 4; do router r$n frr ospfd ospf6d; done
    for n in 1 2 3; do
        line r${n}r$((n + 1)) r$n to-r$((n + 1)) r$((n + 1)) to-r$n
        address r$n to-r$((n + 1)) "10.97.$n.1/30" "2001:db8:97:$n::1/64"
        address r$((n + 1)) to-r$n "10.97.$n.2/30" "2001:db8:97:$n::2/64"
    done
    for n in 1 2 3 4; do
        address r$n lo "$net.$n/32" "2001:db8:f3::$n/128"
        {
            frr_head $n
            case $n in 1 | 4) id=$net.14 ;; esac
            frr_ospf
            frr_ospf6
            frr_loop 0
            [ $n = 1 ] || frr_both to-r$((n - 1)) 0 point-to-point 10
            [ $n = 4 ] || frr_both to-r$((n + 1)) 0 point-to-point 10
        } | config r$n
    done
}

events() {
    expect r1 1 1
    expect r2 2 2
    expect r3 2 2
    expect r4 1 1
    note 'all adjacencies are up'
    sleep 40
}
