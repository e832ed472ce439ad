# shellcheck shell=bash
# answers.sh: what every router says of itself at the end of a run, in the names that the project's
# readers know. An answer that is no JSON, or an error, is not kept.

# ospf_protocols ROUTER 2|3: the names of a BIRD router's protocols of that version
ospf_protocols() {
    local each
    for each in $(birdcl_to "$1" show protocols | awk '$2 == "OSPF" { print $1 }'); do
        case $each in *v"$2"*) echo "$each" ;; esac
    done
}

answers_of() {
    inside "$1" ip -j addr |
        jq 'map({ifindex, ifname, flags, mtu, operstate, address, addr_info})' |
        gzip -9n >"$out/routers/$1/ip-addr.json.gz"
    inside "$1" ip -4 route >"$out/routers/$1/ip-route.txt"
    inside "$1" ip -6 route >"$out/routers/$1/ip-6-route.txt"
    "answers_of_${kind[$1]}" "$1"
}

answers_of_frr() {
    local name=$1 type
    json() { # FILE COMMAND
        local answer
        answer=$(vty "$name" -c "$2" 2>/dev/null) || return 0
        jq -es 'length == 1' >/dev/null 2>&1 <<<"$answer" || return 0
        gzip -9n <<<"$answer" >"$out/routers/$name/$1.json.gz"
    }
    text() { # FILE COMMAND
        local answer
        answer=$(vty "$name" -c "$2" 2>&1) || return 0
        case $answer in
            '' | '% '*) ;;
            *) printf '%s\n' "$answer" >"$out/routers/$name/$1.txt" ;;
        esac
    }
    json ip-ospf 'show ip ospf json'
    json ip-ospf-interface 'show ip ospf interface json'
    json ip-ospf-neighbor 'show ip ospf neighbor json'
    json ip-ospf-neighbor-detail 'show ip ospf neighbor detail json'
    json ip-ospf-route 'show ip ospf route json'
    json ip-route-ospf 'show ip route ospf json'
    json ip-ospf-border-routers 'show ip ospf border-routers json'
    json ip-ospf-database 'show ip ospf database json'
    json ip-ospf-segment-routing 'show ip ospf database segment-routing json'
    json ip-ospf-mpls-te-database 'show ip ospf mpls-te database json'
    text ip-ospf-database 'show ip ospf database'
    text ip-ospf-neighbor 'show ip ospf neighbor'
    text ip-ospf-border-routers 'show ip ospf border-routers'
    text ip-ospf-router-info 'show ip ospf router-info'
    text ip-ospf-mpls-te-interface 'show ip ospf mpls-te interface'
    text ip-ospf-mpls-te-database 'show ip ospf mpls-te database verbose'
    for type in router network summary asbr-summary external nssa-external \
        opaque-link opaque-area opaque-as; do
        json "ip-ospf-database-$type" "show ip ospf database $type json"
        text "ip-ospf-database-$type" "show ip ospf database $type"
    done
    json ipv6-ospf6 'show ipv6 ospf6 json'
    json ipv6-ospf6-interface 'show ipv6 ospf6 interface json'
    json ipv6-ospf6-neighbor 'show ipv6 ospf6 neighbor json'
    json ipv6-ospf6-neighbor-detail 'show ipv6 ospf6 neighbor detail json'
    json ipv6-ospf6-route 'show ipv6 ospf6 route json'
    json ipv6-route-ospf6 'show ipv6 route ospf6 json'
    json ipv6-ospf6-database 'show ipv6 ospf6 database json'
    json ipv6-ospf6-database-detail 'show ipv6 ospf6 database detail json'
    text ipv6-ospf6-database 'show ipv6 ospf6 database'
    text ipv6-ospf6-database-detail 'show ipv6 ospf6 database detail'
    text ipv6-ospf6-database-dump 'show ipv6 ospf6 database dump'
    text ipv6-ospf6-neighbor 'show ipv6 ospf6 neighbor'
}

answers_of_bird() {
    local proto dir="$out/routers/$1"
    birdcl_to "$1" show protocols all >"$dir/protocols-all.txt"
    for proto in $(birdcl_to "$1" show protocols | awk '$2 == "OSPF" { print $1 }'); do
        birdcl_to "$1" show ospf "$proto" >"$dir/$proto.txt"
        birdcl_to "$1" show ospf interface "$proto" >"$dir/$proto-interface.txt"
        birdcl_to "$1" show ospf neighbors "$proto" >"$dir/$proto-neighbors.txt"
        birdcl_to "$1" show ospf topology all "$proto" >"$dir/$proto-topology-all.txt"
        birdcl_to "$1" show ospf state all "$proto" >"$dir/$proto-state-all.txt"
        birdcl_to "$1" show ospf lsadb "$proto" >"$dir/$proto-lsadb.txt"
        birdcl_to "$1" show route protocol "$proto" all >"$dir/$proto-route-all.txt"
    done
}

# keep_logs ROUTER: what its daemons logged of adjacencies, with times, as NAME.log
keep_logs() {
    local log daemon
    for log in "$scratch/$1"-*.log; do
        daemon=${log##*/"$1"-}
        grep -aE 'AdjChg|adjacency|[Nn]eighbor|NSM|[Mm]ismatch|MTU|auth|Router-ID|changed state' "$log" |
            head -n 400 >"$out/routers/$1/$daemon" || rm -f -- "$out/routers/$1/$daemon"
    done
}
