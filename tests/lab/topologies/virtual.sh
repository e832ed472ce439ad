# shellcheck shell=bash
# virtual: a virtual link in OSPFv2 and OSPFv3 across a transit area with equal-cost paths. Router IDs
# 10.252.0.N. FRR's ospf6d has no virtual links, so both ends are BIRD.
#
#   area 0   b1b2       point-to-point: b1, b2 (BIRD)
#   area 1   b2r3 r3b5  the transit area: r3 and r4 (FRR) stand side by side between b2 and b5 (BIRD),
#            b2r4 r4b5  so that the virtual link has two paths of cost 20. Broadcast, since BIRD finds
#                       the far end's OSPFv2 address in its link to a transit network
#   area 0   b5r7 r3r7  behind the virtual link: r7 (FRR) reaches area 0 through b5; r3 is a border
#                       router too, which makes the way b2, r3, r7 shorter than the virtual link's
#   area 2   b5r6       behind the virtual link: r6 (FRR)
#            r6r8       unnumbered in OSPFv2: r8 (FRR)
#
# r7 and b1 redistribute. FRR's ospf6d does not follow the virtual link of other routers either.

net=10.252.0

build() {
    local n a b
    router b1 bird; router b2 bird; router r3; router r4; router b5 bird; router r6; router r7; router r8
    for n in b1:b2 b2:r3 r3:b5 b2:r4 r4:b5 b5:r7 r3:r7 b5:r6 r6:r8; do
        a=${n%:*} b=${n#*:}
        line "$a$b" "$a" "to-$b" "$b" "to-$a"
        address "$a" "to-$b" "2001:db8:${a#?}${b#?}::${a#?}/64"
        address "$b" "to-$a" "2001:db8:${a#?}${b#?}::${b#?}/64"
        [ "$n" != r6:r8 ] || continue
        address "$a" "to-$b" "10.60.${a#?}${b#?}.${a#?}/24"
        address "$b" "to-$a" "10.60.${a#?}${b#?}.${b#?}/24"
    done
    for n in b1 b2 r3 r4 b5 r6 r7 r8; do
        address $n lo "$net.${n#?}/32" "2001:db8:fc::${n#?}/128"
    done
    address r6 to-r8 "$net.6/32"
    address r8 to-r6 "$net.8/32"

    {
        bird_head 1
        cat <<'END'
protocol static out4 { ipv4; route 192.0.2.0/24 blackhole; }
protocol static out6 { ipv6; route 2001:db8:e001::/48 blackhole; }
END
        for n in 2 3; do
            bird_ospf $n "ipv$((n * 2)) { import all; export filter { if source = RTS_STATIC then { ospf_metric1 = 20; ospf_tag = 1; accept; } reject; }; };" <<END
area 0 { $(bird_stub lo 1) $(bird_p2p to-b2 10) };
END
        done
    } | config b1
    {
        bird_head 2
        for n in 2 3; do
            bird_ospf $n <<END
area 0 {
 $(bird_stub lo 1) $(bird_p2p to-b1 10)
};
area 1 {
 $(bird_lan to-r3 10) $(bird_lan to-r4 10)
 virtual link 10.252.0.5 { $(bird_quick) };
};
END
        done
    } | config b2
    {
        frr_head 3
        frr_ospf
        frr_ospf6
        frr_loop 1
        frr_both to-b2 1 broadcast 10
        frr_both to-b5 1 broadcast 10
        frr_both to-r7 0 point-to-point 5
    } | config r3
    {
        frr_head 4
        frr_ospf
        frr_ospf6
        frr_loop 1
        frr_both to-b2 1 broadcast 10
        frr_both to-b5 1 broadcast 10
    } | config r4
    {
        bird_head 5
        for n in 2 3; do
            bird_ospf $n <<END
area 0 {
 $(bird_p2p to-r7 10)
};
area 1 {
 $(bird_stub lo 1) $(bird_lan to-r3 10) $(bird_lan to-r4 10)
 virtual link 10.252.0.2 { $(bird_quick) };
};
area 2 { $(bird_p2p to-r6 10) };
END
        done
    } | config b5
    {
        frr_head 6
        frr_ospf
        frr_ospf6
        frr_loop 2
        frr_both to-b5 2 point-to-point 10
        frr_both to-r8 2 point-to-point 7
    } | config r6
    {
        frr_head 7
        echo 'ip route 198.51.100.0/24 blackhole tag 7'
        echo 'ipv6 route 2001:db8:e007::/48 blackhole tag 7'
        frr_ospf 'redistribute static metric 70'
        frr_ospf6 'redistribute static metric 70'
        frr_loop 0
        frr_both to-b5 0 point-to-point 10
        frr_both to-r3 0 point-to-point 5
    } | config r7
    {
        frr_head 8
        frr_ospf
        frr_ospf6
        frr_loop 2
        frr_both to-r6 2 point-to-point 7
    } | config r8
}

events() {
    expect b1 1 1
    expect b2 4 4
    expect r3 3 3
    expect r4 2 2
    expect b5 5 5
    expect r6 2 2
    expect r7 2 2
    expect r8 1 1
    note 'all adjacencies are up, the virtual link among them'
    settle 8
}
