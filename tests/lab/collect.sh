#!/usr/bin/env bash
# collect.sh TOOL: two FRR routers in network namespaces are listened to by `collect`, which fills a
# store, while `watch` and `lsdb` look at it from other processes. An adjacency comes up, an LSA
# changes and a router goes; each time the store must come to hold what the router that was there
# all the time answers itself, and `watch` must have said it. Needs root and Debian's frr, iproute2,
# jq and python3.
set -euo pipefail

here=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
tool=$1
# shellcheck source=/dev/null
. "$here/ground.sh"
# shellcheck disable=SC2034  # of configs.sh
net=10.240.0
store=$out/store

# What is heard here is heard by the tool.
listen() { :; }

# start NAME COMMAND...: a program, which is ended with the routers
start() {
    local name=$1
    shift
    : >"$out/$name.err"
    "$@" >"$out/$name.out" 2>"$out/$name.err" </dev/null &
    process[tool $name]=$!
}

# Timers as short as whole seconds are, and no waiting with what is to be told.
router_config() { # NUMBER INTERFACE
    frr_head "$1"
    frr_ospf 'timers throttle lsa all 0' 'timers lsa min-arrival 0'
    frr_ospf6 'timers lsa min-arrival 0'
    frr_loop 0
    printf 'interface %s\n' "$2"
    printf ' ip ospf %s\n ipv6 ospf6 %s\n' {network,network}' point-to-point' \
        {'hello-interval 1','hello-interval 1'} {'dead-interval 4','dead-interval 4'}
    printf ' ip ospf area 0\n ipv6 ospf6 area 0\nexit\n'
}

build() {
    router r1 frr ospfd ospf6d
    router r2 frr ospfd ospf6d
    line r1r2 r1 to-r2 r2 to-r1
    address r1 lo 10.240.0.1/32 2001:db8:f0::1/128
    address r2 lo 10.240.0.2/32 2001:db8:f0::2/128
    address r1 to-r2 10.24.12.1/30 2001:db8:24:12::1/64
    address r2 to-r1 10.24.12.2/30 2001:db8:24:12::2/64
    router_config 1 to-r2 | config r1
    router_config 2 to-r1 | config r2
}

# holds STAGE: waits until the store and those who watch it agree with the router that stays
holds() {
    python3 "$here/compare_collected.py" "$tool" "$store" "$out/watch.out" "$1" "$out/lsas" 10.240.0.1 \
        vtysh --config_dir "$scratch/vtysh" -N "$prefix-r1"
}

build
for name in r1 r2; do start_router $name; done
start watch "$tool" watch --json --store "$store"
start collect ip netns exec "$prefix-r1" "$tool" collect -i to-r2 --store "$store"
until grep -q 'listening on' "$out/collect.err"; do
    kill -0 "${process[tool collect]}" || { cat "$out/collect.err" >&2; exit 1; }
    sleep 0.05
done
for name in r1 r2; do configure_router $name; done
holds up
configure r2 'interface to-r1' 'ip ospf cost 77' 'ipv6 ospf6 cost 77'
holds changed
configure r2 'no router ospf' 'no router ospf6'
holds gone
kill -TERM "${process[tool collect]}"
wait "${process[tool collect]}" || { cat "$out/collect.err" >&2; exit 1; }
unset 'process[tool collect]'
"$tool" store check "$store"
