# shellcheck shell=bash
# domain: networks that are up and yet not right. FRR, router IDs 10.244.0.N, OSPFv2; OSPFv3 in the
# backbone and in area 7.
#
#   area 0   r1r2 r2r3   point-to-point
#   area 7   r1r6 r3r7   point-to-point, split: r6 and r7 do not reach each other within the area
#   area 8   r7r8        point-to-point, without backbone: r7 has areas 7 and 8 only
#   area 9   r6r9        point-to-point, reached by a virtual link r1 to r6 across area 7
#   area 5   r2r10 gate  point-to-point, and a network with the gateway 10.44.5.99
#
# r10's external 198.51.100.0/24 has that gateway as its forwarding address, and r2 keeps the gateway's
# network within area 5: for the others the address is out of reach. r1 and r3 redistribute
# 203.0.113.0/24 with the same cost. Of r2's ranges for area 5 one is unused and two overlap. r3 has
# a virtual link to a router that does not exist. While it is recorded, an interface of r10 goes up and
# down and up; at last r1r6 fails, on which the virtual link stands.

net=10.244.0

build() {
    local n a b
    for n in 1 2 3 6 7 8 9 10; do
        router r$n
        address r$n lo "$net.$n/32" "2001:db8:f4::$n/128"
    done
    for n in 1:2 2:3 1:6 3:7 7:8 6:9 2:10; do
        a=${n%:*} b=${n#*:}
        line "r${a}r$b" "r$a" "to-r$b" "r$b" "to-r$a"
        address "r$a" "to-r$b" "10.44.$a$b.1/30" "2001:db8:44:$a$b::$a/64"
        address "r$b" "to-r$a" "10.44.$a$b.2/30" "2001:db8:44:$a$b::$b/64"
    done
    for n in gate low high; do stub r10 $n; done
    address r10 gate 10.44.5.1/24
    address r10 low 10.45.1.1/24
    address r10 high 10.45.129.1/24

    for n in 1 2 3 6 7 8 9 10; do
        {
            frr_head $n
            case $n in
                1 | 3) echo 'ip route 203.0.113.0/24 blackhole' ;;
                10) echo 'ip route 198.51.100.0/24 10.44.5.99' ;;
            esac
            case $n in
                2) frr_loop 0; frr_both to-r1 0 point-to-point 10; frr_both to-r3 0 point-to-point 10
                    frr_both to-r10 5 point-to-point 10
                    frr_ospf 'area 5 range 10.44.5.0/24 not-advertise' 'area 5 range 10.99.0.0/16' \
                        'area 5 range 10.45.0.0/16' 'area 5 range 10.45.128.0/17' ;;
                1) frr_loop 0; frr_both to-r2 0 point-to-point 10; frr_both to-r6 7 point-to-point 10
                    frr_ospf "area 7 virtual-link $net.6" \
                        "area 7 virtual-link $net.6 hello-interval 2 dead-interval 8" \
                        'redistribute static metric 20' ;;
                3) frr_loop 0; frr_both to-r2 0 point-to-point 10; frr_both to-r7 7 point-to-point 10
                    frr_ospf "area 7 virtual-link $net.99" 'redistribute static metric 20' ;;
                6) frr_loop 7; frr_both to-r1 7 point-to-point 10; frr_v2 to-r9 9 point-to-point 10
                    frr_ospf "area 7 virtual-link $net.1" \
                        "area 7 virtual-link $net.1 hello-interval 2 dead-interval 8" ;;
                7) frr_loop 7; frr_both to-r3 7 point-to-point 10; frr_v2 to-r8 8 point-to-point 10
                    frr_ospf ;;
                8) frr_loop 8; frr_v2 to-r7 8 point-to-point 10; frr_ospf ;;
                9) frr_loop 9; frr_v2 to-r6 9 point-to-point 10; frr_ospf ;;
                10) frr_loop 5; frr_both to-r2 5 point-to-point 10
                    for each in gate low high; do frr_v2 $each 5 broadcast 10 passive; done
                    frr_ospf 'redistribute static' ;;
            esac
            case $n in 8 | 9) ;; *) frr_ospf6 ;; esac
        } | config r$n
    done
}

events() {
    expect r1 3 2
    expect r2 3 3
    expect r3 2 2
    expect r6 3 1
    expect r7 2 1
    expect r8 1 0
    expect r9 1 0
    expect r10 1 1
    note 'all adjacencies are up'
    settle 6
    local each
    for each in 1 2 3 4; do
        note "low of r10 goes down and up: $each"
        inside r10 ip link set low down
        sleep 6
        inside r10 ip link set low up
        sleep 6
    done
    also before
    sleep 4
    note 'r1r6 fails'
    inside r6 ip link set to-r1 down
    sleep 3
}
