# shellcheck shell=bash
# nbma: non-broadcast and point-to-multipoint networks. Router IDs 10.253.0.N. FRR's ospf6d has
# neither, so OSPFv3 is spoken by the BIRD routers alone. FRR sends hellos of a point-to-multipoint
# network to a group that BIRD does not join there, so each of the two has a network of its own.
#
#   area 0   cloud   non-broadcast: r1, r2 (FRR), b3, b4, b5 (BIRD) in OSPFv2; b3, b4, b5 in OSPFv3
#   area 1   mesh    point-to-multipoint in OSPFv2: r1, r2, r6 (FRR); r1 and r6 do not hear each other
#   area 2   star    point-to-multipoint in OSPFv2 and OSPFv3: b3, b4, b5; b3 and b5 are not neighbours
#            users   a network behind b5; another one behind r6 in area 1

net=10.253.0

build() {
    local n
    router r1 frr ospfd; router r2 frr ospfd
    router b3 bird; router b4 bird; router b5 bird
    router r6 frr ospfd
    lan cloud r1 r2 b3 b4 b5
    lan mesh r1 r2 r6
    lan star b3 b4 b5
    port mesh r1 isolated on
    port mesh r6 isolated on
    for n in r1 r2 b3 b4 b5 r6; do address $n lo "$net.${n#?}/32" "2001:db8:fd::${n#?}/128"; done
    for n in r1 r2 b3 b4 b5; do address $n cloud "10.70.0.${n#?}/24" "2001:db8:70::${n#?}/64"; done
    for n in r1 r2 r6; do address $n mesh "10.71.0.${n#?}/24"; done
    for n in b3 b4 b5; do address $n star "10.72.0.${n#?}/24" "2001:db8:72::${n#?}/64"; done
    stub r6 users
    address r6 users 10.73.6.1/24
    stub b5 users
    address b5 users 10.73.5.1/24 2001:db8:73:5::1/64

    for n in 1 2 6; do
        {
            frr_head $n
            frr_ospf
            echo 'router ospf'
            [ $n = 6 ] || for each in 1 2 3 4 5; do
                [ $each = $n ] || echo " neighbor 10.70.0.$each priority 1 poll-interval 5"
            done
            echo exit
            printf 'interface lo\n ip ospf area %s\n ip ospf passive\nexit\n' $((n / 6))
            [ $n = 6 ] || frr_v2 cloud 0 non-broadcast 10 "priority $((n * 20))"
            frr_v2 mesh 1 point-to-multipoint 15
            [ $n != 6 ] || frr_v2 users 1 broadcast 3 passive
        } | config r$n
    done
    for n in 3 4 5; do
        {
            bird_head $n
            bird_ospf 2 <<END
area 0 {
 $(bird_stub lo 1)
 interface "cloud" { type nbma; cost 10; $(bird_quick) poll 5; priority $n;
  neighbors { $(for each in 1 2 3 4 5; do [ $each = $n ] || echo "10.70.0.$each eligible;"; done) }; };
};
area 2 {
 interface "star" { type ptmp; cost 15; $(bird_quick) poll 5; strict nonbroadcast yes;
  neighbors { $(for each in 3 4 5; do beside $n $each && echo "10.72.0.$each;"; done) }; };
 $([ $n != 5 ] || bird_stub users 4)
};
END
            bird_ospf 3 <<END
area 0 {
 $(bird_stub lo 1)
 interface "cloud" { type nbma; cost 10; $(bird_quick) poll 5; priority $n;
  neighbors { $(for each in 3 4 5; do [ $each = $n ] || link_local 0 $each ' eligible;'; done) }; };
};
area 2 {
 interface "star" { type ptmp; cost 15; $(bird_quick) poll 5; strict nonbroadcast yes;
  neighbors { $(for each in 3 4 5; do beside $n $each && link_local 2 $((each - 2)) ';'; done) }; };
 $([ $n != 5 ] || bird_stub users 4)
};
END
        } | config b$n
    done
}

beside() { [ $(($1 - $2)) = 1 ] || [ $(($2 - $1)) = 1 ]; }

# link_local SEGMENT-NUMBER PLACE SUFFIX: the address that its interface's MAC makes
link_local() { printf 'fe80::ff:fe01:%x%s ' $(($1 * 256 + $2)) "$3"; }

events() {
    expect r1 5 0
    expect r2 6 0
    expect b3 3 3
    expect b4 4 4
    expect b5 3 3
    expect r6 1 0
    note 'all adjacencies are up'
    settle 8
}
