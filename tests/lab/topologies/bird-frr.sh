# shellcheck shell=bash
# bird-frr: BIRD and FRR together in OSPFv2 and OSPFv3. Router IDs 10.248.0.N.
#
#   area 0   lan        broadcast: r1 (FRR, designated), b2 (BIRD, backup), r3 (FRR), b4 (BIRD)
#   area 1   r3b5       point-to-point, r3, b5 (BIRD), with MD5 in OSPFv2
#            b4b5       point-to-point: b4, b5
#            b5r6       broadcast with two routers: b5, r6 (FRR)
#
# r1, b4 and r6 redistribute; b2 originates a default. r3 and b4 are border routers.

net=10.248.0

build() {
    local n
    router r1; router b2 bird; router r3; router b4 bird; router b5 bird; router r6
    lan lan r1 b2 r3 b4
    line r3b5 r3 to-b5 b5 to-r3
    line b4b5 b4 to-b5 b5 to-b4
    line b5r6 b5 to-r6 r6 to-b5
    for n in r1 b2 r3 b4; do address $n lan "10.90.0.${n#?}/24" "2001:db8:90::${n#?}/64"; done
    for n in r1 b2 r3 b4 b5 r6; do address $n lo "$net.${n#?}/32" "2001:db8:f8::${n#?}/128"; done
    address r3 to-b5 10.90.35.1/30 2001:db8:90:35::3/64
    address b5 to-r3 10.90.35.2/30 2001:db8:90:35::5/64
    address b4 to-b5 10.90.45.1/30 2001:db8:90:45::4/64
    address b5 to-b4 10.90.45.2/30 2001:db8:90:45::5/64
    address b5 to-r6 10.90.56.5/24 2001:db8:90:56::5/64
    address r6 to-b5 10.90.56.6/24 2001:db8:90:56::6/64

    {
        frr_head 1
        echo 'ip route 192.0.2.0/24 10.90.0.99 tag 1'
        echo 'ipv6 route 2001:db8:e001::/48 blackhole tag 1'
        frr_loop 0
        frr_both lan 0 broadcast 10 'priority 90'
        frr_ospf 'redistribute static metric 30 metric-type 1'
        frr_ospf6 'redistribute static metric 30 metric-type 1'
    } | config r1
    {
        bird_head 2
        cat <<'END'
protocol static out4 { ipv4; route 0.0.0.0/0 blackhole; }
protocol static out6 { ipv6; route ::/0 blackhole; }
END
        for n in 2 3; do
            bird_ospf $n "$([ $n = 2 ] && echo ipv4 || echo ipv6) { import all; export filter { if source = RTS_STATIC then { ospf_metric2 = 15; accept; } reject; }; };" <<END
area 0 { $(bird_stub lo 1) $(bird_lan lan 10 'priority 50;') };
END
        done
    } | config b2
    {
        frr_head 3
        frr_ospf 'area 1 range 10.90.32.0/19'
        frr_ospf6 'area 0.0.0.1 range 2001:db8:90::/56'
        frr_loop 0
        frr_both lan 0 broadcast 10
        frr_v2 to-b5 1 point-to-point 10 'authentication message-digest' 'message-digest-key 5 md5 lab-key-5'
        frr_v3 to-b5 1 point-to-point 10
    } | config r3
    {
        bird_head 4
        cat <<'END'
protocol static out4 { ipv4; route 198.51.100.0/24 blackhole; }
protocol static out6 { ipv6; route 2001:db8:e004::/48 blackhole; }
END
        for n in 2 3; do
            bird_ospf $n "$([ $n = 2 ] && echo ipv4 || echo ipv6) { import all; export filter { if source = RTS_STATIC then { ospf_metric2 = 25; ospf_tag = 4; accept; } reject; }; };" <<END
area 0 { $(bird_stub lo 1) $(bird_lan lan 10 'priority 3;') };
area 1 { $(bird_p2p to-b5 10) };
END
        done
    } | config b4
    {
        bird_head 5
        for n in 2 3; do
            bird_ospf $n <<END
area 1 {
 $(bird_stub lo 1)
 $(bird_p2p to-r3 10 "$([ $n = 3 ] || echo 'authentication cryptographic; password "lab-key-5" { id 5; algorithm keyed md5; };')")
 $(bird_p2p to-b4 10) $(bird_lan to-r6 10 'priority 7;')
};
END
        done
    } | config b5
    {
        frr_head 6
        echo 'ip route 203.0.113.0/24 blackhole tag 6'
        echo 'ipv6 route 2001:db8:e006::/48 blackhole tag 6'
        frr_ospf 'redistribute static metric 66'
        frr_ospf6 'redistribute static metric 66'
        frr_loop 1
        frr_both to-b5 1 broadcast 10
    } | config r6
}

events() {
    expect r1 3 3
    expect b2 3 3
    expect r3 3 3
    expect b4 3 3
    expect b5 3 3
    expect r6 1 1
    note 'all adjacencies are up'
    settle 8
}
