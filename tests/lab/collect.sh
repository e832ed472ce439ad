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
# shellcheck source=/dev/null
. "$here/pair.sh"
store=$out/collect.store

# holds STAGE: waits until the store and those who watch it agree with the router that stays
holds() {
    python3 "$here/compare_collected.py" "$tool" "$store" "$out/watch.out" "$1" "$out/lsas" 10.240.0.1 \
        vtysh --config_dir "$scratch/vtysh" -N "$prefix-r1"
}

pair 240 1 2
for name in r1 r2; do start_router $name; done
start watch "$tool" watch --json --store "$store"
collects collect r1 to-r2
for name in r1 r2; do configure_router $name; done
holds up
configure r2 'interface to-r1' 'ip ospf cost 77' 'ipv6 ospf6 cost 77'
holds changed
configure r2 'no router ospf' 'no router ospf6'
holds gone
ends collect
"$tool" store check "$store"
