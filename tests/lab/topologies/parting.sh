# shellcheck shell=bash
# parting: neighbours that were up until somebody changed one end, and a virtual link that outlives its
# transit area. FRR, router IDs 10.238.0.N, OSPFv2 and OSPFv3 unless told.
#
#   area 0   r1r2 r4r5   point-to-point
#   area 7   r2r3 r3r4   point-to-point; r2 and r4 have a virtual link across it (OSPFv2)
#   area 0   r1r6 r1r7 r1r8   point-to-point: r6 changes its hello interval, r7 its area, r8 begins to
#                             authenticate
#
# r2 and r4 calculate their routes at most every 20 seconds, as routers do under load, and see only
# then that the virtual link has lost its ground, when at last r3r4 fails.

net=10.238.0

build() {
    local n a b
    for n in 1 2 3 4 5 6 7 8; do
        router r$n
        address r$n lo "$net.$n/32" "2001:db8:ee::$n/128"
    done
    for n in 1:2 2:3 3:4 4:5 1:6 1:7 1:8; do
        a=${n%:*} b=${n#*:}
        line "r${a}r$b" "r$a" "to-r$b" "r$b" "to-r$a"
        address "r$a" "to-r$b" "10.38.$a$b.1/30" "2001:db8:38:$a$b::$a/64"
        address "r$b" "to-r$a" "10.38.$a$b.2/30" "2001:db8:38:$a$b::$b/64"
    done
    for n in 1 2 3 4 5 6 7 8; do
        {
            frr_head $n
            case $n in
                1) frr_loop 0; for b in 2 6 7 8; do frr_both to-r$b 0 point-to-point 10; done; frr_ospf ;;
                2) frr_loop 0; frr_both to-r1 0 point-to-point 10; frr_both to-r3 7 point-to-point 10
                    frr_ospf 'timers throttle spf 20000 20000 20000' "area 7 virtual-link $net.4" ;;
                3) frr_loop 7; frr_both to-r2 7 point-to-point 10; frr_both to-r4 7 point-to-point 10
                    frr_ospf ;;
                4) frr_loop 7; frr_both to-r3 7 point-to-point 10; frr_v2 to-r5 0 point-to-point 10
                    frr_v3 to-r5 7 point-to-point 10
                    frr_ospf 'timers throttle spf 20000 20000 20000' "area 7 virtual-link $net.2" ;;
                5) frr_loop 0 7; frr_v2 to-r4 0 point-to-point 10; frr_v3 to-r4 7 point-to-point 10
                    frr_ospf ;;
                *) frr_loop 0; frr_both to-r1 0 point-to-point 10; frr_ospf ;;
            esac
            frr_ospf6
        } | config r$n
    done
}

events() {
    expect r1 4 4
    expect r2 3 2
    expect r3 2 2
    expect r4 3 2
    note 'all adjacencies are up'
    settle 5
    note 'r6 changes its hello interval'
    configure r6 'interface to-r1' 'ip ospf hello-interval 3' 'ipv6 ospf6 hello-interval 3'
    sleep 12
    note 'r7 changes its area'
    configure r7 'interface to-r1' 'no ip ospf area 0' 'no ipv6 ospf6 area 0' \
        'ip ospf area 6' 'ipv6 ospf6 area 6'
    sleep 12
    note 'r8 begins to authenticate'
    configure r8 'interface to-r1' 'ip ospf authentication message-digest' \
        'ip ospf message-digest-key 1 md5 lab-key-1' \
        'ipv6 ospf6 authentication key-id 1 hash-algo hmac-sha-256 key lab-key-1'
    sleep 24
    note 'r3r4 fails'
    inside r4 ip link set to-r3 down
    sleep 45
}
