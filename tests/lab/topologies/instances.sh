# shellcheck shell=bash
# instances: three OSPFv3 instances on the same links. Router IDs 10.249.0.N, the same in all three.
#
#   instance 0    IPv6, area 0 on `lan`, area 1 on b2b3 and b3r4: b1, b2, b3 (BIRD), r4 (FRR)
#   instance 64   IPv4 as an address family, area 0 on `lan` and b2b3: b1, b2, b3
#   instance 1    a second IPv6 one with a table of its own, area 0 on `lan`: b1, b2
#
#   lan    broadcast: b1, b2, b3; each instance has a designated router of its own
#   b2b3   point-to-point
#   b3r4   point-to-point
#
# Interfaces have several prefixes. b1 redistributes into all three, each with prefixes of its own.

net=10.249.0

build() {
    local n
    for n in b1 b2 b3; do router $n bird; done
    router r4
    lan lan b1 b2 b3
    line b2b3 b2 to-b3 b3 to-b2
    line b3r4 b3 to-r4 r4 to-b3
    for n in b1 b2 b3; do
        address $n lan "10.80.0.${n#?}/24" "10.80.1.${n#?}/25" \
            "2001:db8:80::${n#?}/64" "2001:db8:80:1::${n#?}/64" "2001:db8:80:2::${n#?}/80"
    done
    for n in b1 b2 b3 r4; do address $n lo "$net.${n#?}/32" "2001:db8:f9::${n#?}/128"; done
    address b2 to-b3 10.80.23.1/30 2001:db8:80:23::2/64
    address b3 to-b2 10.80.23.2/30 2001:db8:80:23::3/64
    address b3 to-r4 2001:db8:80:34::3/64 2001:db8:80:35::3/64
    address r4 to-b3 2001:db8:80:34::4/64 2001:db8:80:35::4/64
    stub b1 users
    address b1 users 10.81.1.1/24 10.81.2.1/26 2001:db8:81:1::1/64 2001:db8:81:2::1/56
    stub b3 users
    address b3 users 10.83.1.1/24 2001:db8:83:1::1/64

    for n in 1 2 3; do
        {
            bird_head $n
            echo 'ipv6 table second;'
            if [ $n = 1 ]; then
                cat <<'END'
protocol static out4 { ipv4; route 192.0.2.0/24 blackhole; route 198.51.100.0/25 blackhole; }
protocol static out6 { ipv6; route 2001:db8:e000::/48 blackhole; route 2001:db8:e001::/56 blackhole; }
protocol static out1 { ipv6 { table second; }; route 2001:db8:e100::/48 blackhole; }
END
            fi
            bird_ospf 3 'ipv6 { import all; export filter { if source = RTS_STATIC then { ospf_metric2 = 50; ospf_tag = 6; accept; } reject; }; };' <<END
area 0 {
 $(bird_lan lan 10 "priority $((n * 10));") $([ $n = 3 ] || bird_stub lo 1) $([ $n != 1 ] || bird_stub users 3)
};
$([ $n = 1 ] || echo "area 1 { $([ $n = 2 ] && bird_p2p to-b3 12 || { bird_p2p to-b2 12; bird_p2p to-r4 10; bird_stub lo 1; bird_stub users 3; }) };")
END
            bird_ospf 3 'ipv4 { import all; export filter { if source = RTS_STATIC then { ospf_metric1 = 40; ospf_tag = 4; accept; } reject; }; }; # ipv6 has its own' <<END |
area 0 {
 $(bird_lan lan 10 "priority $((40 - n * 10));") $(bird_stub lo 1) $([ $n = 2 ] || bird_stub users 4)
 $([ $n = 1 ] || { [ $n = 2 ] && bird_p2p to-b3 20 || bird_p2p to-b2 20; })
};
END
                sed 's/ospf_v3 {/ospf_v3_ipv4 {/'
            [ $n = 3 ] || bird_ospf 3 'instance id 1;' 'ipv6 { table second; import all; export where source = RTS_STATIC; };' <<END |
area 0 { $(bird_lan lan 30 "priority $((n + 1));") $([ $n = 2 ] || bird_stub users 5) };
END
                sed 's/ospf_v3 {/ospf_v3_second {/'
        } | config b$n
    done
    {
        frr_head 4
        frr_ospf6
        frr_v3 to-b3 1 point-to-point 10
        printf 'interface lo\n ipv6 ospf6 area 1\nexit\n'
    } | config r4
}

events() {
    expect b1 0 5
    expect b2 0 7
    expect b3 0 7
    expect r4 0 1
    note 'all adjacencies are up'
    settle 8
}
