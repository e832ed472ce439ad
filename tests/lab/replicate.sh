#!/usr/bin/env bash
# replicate.sh TOOL: two networks of two FRR routers each, with a collector and a sender each, and one
# store that follows both, as two tenants. An adjacency comes up, an LSA changes and a router goes;
# each time the store must come to hold what the routers of both networks answer, and `watch --from`
# must have said it. Needs root and Debian's frr, iproute2, jq, nats-server and python3.
set -euo pipefail

here=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
tool=$1
# shellcheck source=/dev/null
. "$here/ground.sh"
# shellcheck source=/dev/null
. "$here/pair.sh"
both=$out/both.store

# Below the ports that the system gives to who connects.
port=$((15000 + $$ % 15000))
engine=nats://127.0.0.1:$port

# Each tenant of the store, as the tool of a reader that knows of no other.
reader() { # NUMBER
    printf '#!/bin/sh\nexec "%s" "$@" --tenant %s\n' "$tool" "$1" >"$out/reader-$1"
    chmod 755 "$out/reader-$1"
}

# holds STAGE: waits until the store and those who watch it agree with the routers that stay
holds() {
    local site
    for site in 1 2; do
        python3 "$here/compare_collected.py" "$out/reader-$site" "$both" "$out/watch$site.out" "$1" \
            "$out/lsas$site" "10.$((239 + site)).0.$((2 * site - 1))" \
            vtysh --config_dir "$scratch/vtysh" -N "$prefix-r$((2 * site - 1))"
    done
}

pair 240 1 2
pair 241 3 4
for name in r1 r2 r3 r4; do start_router $name; done
start engine nats-server -a 127.0.0.1 -p "$port" -js -sd "$out/engine"
collects collect1 r1 to-r2
collects collect2 r3 to-r4
for site in 1 2; do
    reader $site
    start "send$site" "$tool" replicate --store "$out/collect$site.store" --to "$engine" --name "site$site"
    says "send$site" 'the bucket holds the store'
    start "follow$site" "$tool" replicate --store "$both" --tenant $site --from "$engine" --name "site$site"
    start "watch$site" "$tool" watch --json --from "$engine" --name "site$site"
done
for name in r1 r2 r3 r4; do configure_router $name; done
holds up
configure r2 'interface to-r1' 'ip ospf cost 77' 'ipv6 ospf6 cost 77'
configure r4 'interface to-r3' 'ip ospf cost 78' 'ipv6 ospf6 cost 78'
holds changed
configure r2 'no router ospf' 'no router ospf6'
configure r4 'no router ospf' 'no router ospf6'
holds gone
for site in 1 2; do
    "$tool" replicate --status --store "$both" --tenant $site --from "$engine" --name "site$site"
    for name in collect send follow; do ends "$name$site"; done
done
"$tool" store check "$both"
