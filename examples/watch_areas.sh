#!/bin/sh
# One process is told of what three others do, one after the other.
#   watch_areas.sh PROGRAM
set -eu
folder=$(mktemp -d)
watcher=
trap 'test -z "$watcher" || kill "$watcher" 2>/dev/null || true; rm -rf "$folder"' EXIT
"$1" "$folder/store" >"$folder/heard" 2>"$folder/said" &
watcher=$!
for step in 'make 4' 'change 7'; do
  "$1" "$folder/store" "${step% *}"
  tries=0
  until [ "$(wc -l <"$folder/heard")" -ge "${step#* }" ]; do
    tries=$((tries + 1))
    if [ $tries -gt 400 ] || ! kill -0 "$watcher" 2>/dev/null; then
      cat "$folder/heard" "$folder/said" >&2
      exit 1
    fi
    sleep 0.05
  done
done
"$1" "$folder/store" end
wait "$watcher" || { cat "$folder/said" >&2; exit 1; }
watcher=
cat >"$folder/expected" <<HEARD
a transaction:
  area 0 came
  area 51 came
  together 2
a transaction:
  area 0 changed: it has a table of interfaces
  together 1
a transaction:
  area 0 went
  area 51 went
  together 2
HEARD
diff "$folder/expected" "$folder/heard"
