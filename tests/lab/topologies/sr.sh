# shellcheck shell=bash
# sr: segment routing, traffic engineering and router information in OSPFv2, four FRR routers, router
# IDs 10.247.0.N.
#
#   area 0   lan    broadcast: r1, r2, r3 (LAN-Adj-SIDs)
#            r3r4   point-to-point (Adj-SIDs)
#            r2r4   point-to-point
#
# The SRGBs and SRLBs differ, prefix SIDs come with and without the no-PHP and explicit-null flags, r4
# tells a maximum depth, r2r4 has delays and bandwidths. While it is recorded, r4 changes its index.

net=10.247.0

build() {
    local n
    for n in 1 2 3 4; do router r$n frr ospfd; done
    lan lan r1 r2 r3
    line r3r4 r3 to-r4 r4 to-r3
    line r2r4 r2 to-r4 r4 to-r2
    for n in 1 2 3 4; do address r$n lo "$net.$n/32"; done
    for n in 1 2 3; do address r$n lan "10.95.0.$n/24"; done
    address r3 to-r4 10.95.34.1/30
    address r4 to-r3 10.95.34.2/30
    address r2 to-r4 10.95.24.1/30
    address r4 to-r2 10.95.24.2/30
    for n in 1 2 3 4; do
        {
            frr_head $n
            printf 'interface lo\n ip ospf area 0\n ip ospf passive\nexit\n'
            [ $n = 4 ] || { frr_v2 lan 0 broadcast 10 "priority $((40 - n * 10))"; te lan 10; }
            [ $n != 3 ] || { frr_v2 to-r4 0 point-to-point 20; te to-r4 20; }
            [ $n != 2 ] || { frr_v2 to-r4 0 point-to-point 20; te to-r4 25 delay; }
            [ $n != 4 ] || { frr_v2 to-r3 0 point-to-point 20; te to-r3 20
                frr_v2 to-r2 0 point-to-point 20; te to-r2 25 delay; }
            frr_ospf 'capability opaque' 'mpls-te on' "mpls-te router-address $net.$n" 'router-info area'
            echo 'router ospf'
            case $n in
                1) printf ' segment-routing on\n segment-routing prefix %s index 101\n' "$net.1/32" ;;
                2) printf ' segment-routing on\n segment-routing global-block 17000 18999 local-block 5000 5499\n'
                   printf ' segment-routing prefix %s index 102 no-php-flag\n' "$net.2/32" ;;
                3) printf ' segment-routing on\n segment-routing global-block 16000 16999\n'
                   printf ' segment-routing prefix %s index 103 explicit-null\n' "$net.3/32" ;;
                4) printf ' segment-routing on\n segment-routing node-msd 8\n'
                   printf ' segment-routing prefix %s index 104\n' "$net.4/32" ;;
            esac
            echo exit
        } | config r$n
    done
}

# te INTERFACE METRIC [delay]: link parameters, bandwidths in bytes a second
te() {
    printf 'interface %s\n link-params\n  enable\n  metric %s\n  max-rsv-bw 1.0e+08\n' "$1" "$2"
    local each
    for each in 0 1 2 3 4 5 6 7; do echo "  unrsv-bw $each $((10 - each)).0e+07"; done
    printf '  max-bw 1.25e+08\n  admin-grp 0x%x\n' "$2"
    [ $# -lt 3 ] || cat <<'END'
  delay 1200 min 1000 max 1500
  delay-variation 150
  packet-loss 1.5
  res-bw 1.0e+08
  ava-bw 9.0e+07
  use-bw 1.0e+07
END
    printf ' exit-link-params\nexit\n'
}

events() {
    expect r1 2 0
    expect r2 3 0
    expect r3 3 0
    expect r4 2 0
    note 'all adjacencies are up'
    settle 8
    note 'r4 has another index'
    configure r4 'router ospf' "segment-routing prefix $net.4/32 index 114"
    settle 6
}
