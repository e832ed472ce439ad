# shellcheck shell=bash
# mismatch: one hub and what can be wrong between it and a neighbour, each on a link named after it.
# FRR, router IDs 10.245.0.N (the hub is r1), OSPFv2 and OSPFv3 unless told, all in area 0 unless told.
#
#   hello      r2    the hub's hello interval is 2, r2's 3
#   dead       r3    dead interval 8 and 12
#   mask       r4    OSPFv2: 10.98.4.0/24 and 10.98.4.0/25, broadcast
#   mtu        r5    1500 and 1400 bytes
#   area       r6    area 0 and area 6
#   stub       r7    area 7 is a stub for r7 alone
#   authtype   r8    MD5 (OSPFv3: trailer) for the hub alone
#   authkey    r9    two keys
#   sameid     r10   has the hub's router ID
#   sameaddr   r11   OSPFv2: has the hub's address, broadcast
#   type       r12   point-to-point for the hub, broadcast for r12
#   oneway     r13   works until the hub stops to hear it
#   dies       r14   works, dies without a word, comes back
#   lossy      r15   works; once multicasts to r15 are lost for some seconds, so that LSAs are sent again
#   right      r16   works

net=10.245.0
links='hello:2 dead:3 mask:4 mtu:5 area:6 stub:7 authtype:8 authkey:9 sameid:10 sameaddr:11 type:12
    oneway:13 dies:14 lossy:15 right:16'

build() {
    local each n link
    router r1 frr ospfd ospf6d
    for each in $links; do
        link=${each%:*} n=${each#*:}
        router "r$n" frr ospfd ospf6d
        lan "$link" r1 "r$n"
        address r1 "$link" "10.98.$n.1/24" "2001:db8:98:$n::1/64"
        case $link in
            mask) address "r$n" "$link" "10.98.$n.2/25" "2001:db8:98:$n::2/64" ;;
            sameaddr) address "r$n" "$link" "10.98.$n.1/24" "2001:db8:98:$n::2/64" ;;
            *) address "r$n" "$link" "10.98.$n.2/24" "2001:db8:98:$n::2/64" ;;
        esac
        address "r$n" lo "$net.$n/32"
    done
    inside r5 ip link set dev mtu mtu 1400

    {
        frr_head 1
        frr_ospf
        frr_ospf6
        for each in $links; do end "${each%:*}" hub; done
    } | config r1
    for each in $links; do
        link=${each%:*} n=${each#*:}
        {
            frr_head "$n"
            [ "$link" != sameid ] || id=$net.1
            case $link in
                stub) frr_ospf 'area 7 stub'; frr_ospf6 'area 0.0.0.7 stub' ;;
                *) frr_ospf; frr_ospf6 ;;
            esac
            printf 'interface lo\n ip ospf passive\n ip ospf area %s\nexit\n' \
                "$(case $link in stub) echo 7 ;; area) echo 6 ;; *) echo 0 ;; esac)"
            end "$link" spoke
        } | config "r$n"
    done
}

# end LINK hub|spoke: the interface at that end
end() {
    local area=0 type=point-to-point v2=() v3=()
    case $1:$2 in
        hello:spoke) v2=('hello-interval 3') v3=('hello-interval 3') ;;
        dead:spoke) v2=('dead-interval 12') v3=('dead-interval 12') ;;
        mask:* | sameaddr:* | type:spoke) type=broadcast ;;
        area:spoke) area=6 ;;
        stub:*) area=7 ;;
        authtype:hub) v2=('authentication message-digest' 'message-digest-key 1 md5 lab-key-1')
            v3=('authentication key-id 1 hash-algo hmac-sha-256 key lab-key-1') ;;
        authkey:*) v2=('authentication message-digest' "message-digest-key 1 md5 key-of-$2")
            v3=("authentication key-id 1 hash-algo hmac-sha-256 key key-of-$2") ;;
        lossy:*) v2=('hello-interval 5' 'dead-interval 20') v3=('hello-interval 5' 'dead-interval 20') ;;
    esac
    frr_v2 "$1" "$area" "$type" 10 "${v2[@]}"
    frr_v3 "$1" "$area" "$type" 10 "${v3[@]}"
}

events() {
    local n
    for n in 13 14 15 16; do expect r$n 1 1; done
    note 'what can be up is up'
    sleep 12
    note 'the hub stops to hear r13'
    port oneway r1 mcast_flood off
    note 'r14 dies'
    crash r14 ospfd
    crash r14 ospf6d
    sleep 14
    note 'r14 is back'
    revive r14 ospfd
    revive r14 ospf6d
    expect r14 1 1
    note 'multicasts to r15 are lost, and r16 changes a cost'
    port lossy r15 mcast_flood off
    configure r16 'interface right' 'ip ospf cost 33' 'ipv6 ospf6 cost 33'
    sleep 9
    port lossy r15 mcast_flood on
    note 'multicasts to r15 arrive again'
    sleep 12
}
