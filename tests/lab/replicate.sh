#!/usr/bin/env bash
# replicate.sh TOOL: two networks of two FRR routers each, with a collector and a sender each, and one
# store that follows both, one as a tenant and one as a source. An adjacency comes up, an LSA changes
# and a router goes; each time the store must come to hold what the routers of both networks answer,
# and `watch --from` must have said it, seen by who chooses a site and by who sees all. Needs root and
# Debian's frr, iproute2, jq, nats-server and python3.
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

chosen=([1]='--tenant 1' [2]='--source 2')
keys=([1]='.tenant == 1 and .source == 1' [2]='.tenant == 0 and .source == 2')

# The tool of a reader that chooses a site, and of one that is shown all of them and looks for one.
readers() { # SITE
    printf '#!/bin/sh\nexec "%s" "$@" %s\n' "$tool" "${chosen[$1]}" >"$out/reader-$1"
    printf '#!/bin/sh\n"%s" "$@" | jq -c "select(%s) | del(.tenant, .source)"\n' \
        "$tool" "${keys[$1]}" >"$out/reader-of-all-$1"
    chmod 755 "$out/reader-$1" "$out/reader-of-all-$1"
}

# holds STAGE: waits until the store and those who watch it agree with the routers that stay
holds() {
    local site reader
    for site in 1 2; do
        for reader in reader reader-of-all; do
            python3 "$here/compare_collected.py" "$out/$reader-$site" "$both" "$out/watch$site.out" "$1" \
                "$out/lsas-$reader-$site" "10.$((239 + site)).0.$((2 * site - 1))" \
                vtysh --config_dir "$scratch/vtysh" -N "$prefix-r$((2 * site - 1))"
        done
    done
}

pair 240 1 2
pair 241 3 4
for name in r1 r2 r3 r4; do start_router $name; done
start engine nats-server -a 127.0.0.1 -p "$port" -js -sd "$out/engine"
collects collect1 r1 to-r2
collects collect2 r3 to-r4
for site in 1 2; do
    readers $site
    start "send$site" "$tool" replicate --store "$out/collect$site.store" --to "$engine" --name "site$site"
    says "send$site" 'the bucket holds the store'
    # shellcheck disable=SC2086
    start "follow$site" "$tool" replicate --store "$both" ${chosen[$site]} --from "$engine" --name "site$site"
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
    # shellcheck disable=SC2086
    "$tool" replicate --status --store "$both" ${chosen[$site]} --from "$engine" --name "site$site"
    for name in collect send follow; do ends "$name$site"; done
done
"$tool" store check "$both"
