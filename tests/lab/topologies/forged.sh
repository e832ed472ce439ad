# shellcheck shell=bash
# forged: what daemons do not send of themselves. FRR, router IDs 10.242.0.N, OSPFv2, area 0,
# point-to-point links in a row: r1r2, r2r3.
#
# In r2's name forge.py sends to r3 an older-looking future of an LSA of r3's own, with sequence number
# 0x7ffffffc, so that r3 goes on from there, reaches the last number and begins anew; then an LSA with
# a wrong checksum, and a packet with a wrong checksum. Then r1 is restarted twice: killed, and
# gracefully.

net=10.242.0

build() {
    local n
    for n in 1 2 3; do router r$n frr staticd ospfd; done
    for n in 1 2; do
        line r${n}r$((n + 1)) r$n to-r$((n + 1)) r$((n + 1)) to-r$n
        address r$n to-r$((n + 1)) "10.94.$n.1/30"
        address r$((n + 1)) to-r$n "10.94.$n.2/30"
    done
    for n in 1 2 3; do
        address r$n lo "$net.$n/32"
        {
            frr_head $n
            [ $n != 3 ] || echo 'ip route 192.0.2.0/24 blackhole'
            case $n in
                1) frr_ospf 'capability opaque' 'graceful-restart grace-period 60' ;;
                2) frr_ospf 'capability opaque' 'graceful-restart helper enable' ;;
                3) frr_ospf 'capability opaque' 'redistribute static metric 20' ;;
            esac
            printf 'interface lo\n ip ospf passive\n ip ospf area 0\nexit\n'
            [ $n = 1 ] || frr_v2 to-r$((n - 1)) 0 point-to-point 10
            [ $n = 3 ] || frr_v2 to-r$((n + 1)) 0 point-to-point 10
        } | config r$n
    done
}

forge() { inside r2 python3 "$here/forge.py" --interface to-r3 --from 10.94.2.1 --router "$net.2" "$@"; }

events() {
    local metric
    expect r1 1 0
    expect r2 2 0
    expect r3 1 0
    note 'all adjacencies are up'
    settle 5
    note 'forged: sequence number 7ffffffc of an external of r3'
    forge --originator "$net.3" --sequence 7ffffffc
    for metric in 21 22 23 24 25; do
        sleep 7
        note "r3 changes the metric to $metric"
        configure r3 'router ospf' "redistribute static metric $metric"
    done
    sleep 8
    note 'forged: an LSA with a wrong checksum'
    forge --originator "$net.2" --sequence 80000001 --wrong-lsa
    note 'forged: a packet with a wrong checksum'
    forge --originator "$net.2" --sequence 80000001 --wrong-packet
    sleep 6
    note 'r1 is killed and comes back at once'
    crash r1 ospfd
    revive r1 ospfd
    expect r1 1 0
    settle 5
    note 'r1 restarts gracefully'
    vty r1 -c 'graceful-restart prepare ip ospf' >/dev/null
    sleep 1
    crash r1 ospfd
    revive r1 ospfd
    expect r1 1 0
    settle 5
    rm -f -- "$sockets/ospfd-gr.json"
}
