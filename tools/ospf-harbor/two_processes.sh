#!/bin/sh
# Sends the tree of the sample to a second process and compares what both show.
#   two_processes.sh TOOL SAMPLE...
set -e
tool=$1
shift
folder=$(mktemp -d)
receiver=
trap 'test -z "$receiver" || kill "$receiver" 2>/dev/null || true; rm -rf "$folder"' EXIT

"$tool" receive --at "unix:$folder/socket" --tree >"$folder/received" 2>"$folder/said" &
receiver=$!
tries=0
until grep -q "receiving at" "$folder/said"; do
  tries=$((tries + 1))
  if [ $tries -gt 100 ] || ! kill -0 "$receiver" 2>/dev/null; then
    cat "$folder/said" >&2
    exit 1
  fi
  sleep 0.05
done
"$tool" send --to "unix:$folder/socket" --from "$@" >"$folder/loaded" 2>"$folder/sent" ||
  { cat "$folder/sent" >&2; exit 1; }
wait "$receiver" || { cat "$folder/said" >&2; exit 1; }
receiver=
"$tool" export --text "$folder/shown" --from "$@" >/dev/null 2>"$folder/exported"
cmp "$folder/shown" "$folder/received"
echo "sent $(sed -n 's/^sent \(.*\) to unix.*/\1/p' "$folder/sent") to a second process:" \
  "it shows the same $(wc -l <"$folder/received") lines"
