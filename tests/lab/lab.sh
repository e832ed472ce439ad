#!/usr/bin/env bash
# lab.sh TOPOLOGY OUTDIR: runs an OSPF network of FRR and BIRD routers in network namespaces, records
# every OSPF packet on every link, and asks each router at the end what it holds.
#
# TOPOLOGY is a file topologies/TOPOLOGY.sh that defines two functions, `build` and `events`, out of
# the verbs of verbs.sh and configs.sh. Needs root and Debian's frr, bird2, tcpdump, tshark (with
# mergecap), iproute2, jq and python3. OUTDIR gets all.pcap, tshark.json.gz, segments.tsv, events.txt
# and routers/NAME/ with the configuration, the daemons' logs and the answers (answers.sh); what was
# there of an earlier run goes. Only processes and namespaces that it made are ended.
set -euo pipefail

here=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
[ $# -eq 2 ] && [ -f "$here/topologies/$1.sh" ] || { echo "usage: lab.sh TOPOLOGY OUTDIR" >&2; exit 2; }
topology=$1
mkdir -p "$2"
out=$(cd -- "$2" && pwd)
rm -rf -- "$out/routers" "$out/"*.pcap
# shellcheck source=/dev/null
. "$here/ground.sh"
# shellcheck source=/dev/null
. "$here/answers.sh"
# shellcheck source=/dev/null
. "$here/topologies/$topology.sh"

build
for name in "${routers[@]}"; do start_router "$name"; done
note 'daemons are up'
for name in "${routers[@]}"; do configure_router "$name"; done
events
note 'asking the routers'
for name in "${routers[@]}"; do answers_of "$name"; done
note 'asked'
end_captures
for name in "${routers[@]}"; do keep_logs "$name"; done
