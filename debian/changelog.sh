#!/bin/sh
# Prints the changelog that Debian's tools take the version from: the version of project() in
# CMakeLists.txt, with what CHANGELOG.md says came with it.
set -eu
cd "$(dirname "$0")/.."
version=$(sed -n 's/^project(.* VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt)
author=$(sed -n 's/^Maintainer: //p' debian/control)
changed=$(git log -1 --format=%aD -- CHANGELOG.md 2>/dev/null || true)
[ -n "$changed" ] || changed=$(date -R -r CHANGELOG.md)
text=$(awk -v version="$version" '
  /^## / { inside = $2 == version || $2 == version ","; next }
  inside { gsub(/`/, ""); print }' CHANGELOG.md |
  # Each item on a line of its own, then folded as these tools want it.
  awk '/^- / { if (item) print item; item = $0; next }
    /^  / { sub(/^ +/, ""); item = item " " $0 }
    END { if (item) print item }' |
  while IFS= read -r item; do
    printf '%s\n' "${item#- }" | fold -s -w 74 | sed 's/ *$//; 1s/^/  * /; 2,$s/^/    /'
  done)
if [ -z "$text" ]; then
  echo "CHANGELOG.md: found nothing of $version, the version in CMakeLists.txt, expected its lines" >&2
  exit 1
fi
printf 'ospf-harbor-oper (%s) unstable; urgency=medium\n\n%s\n\n -- %s  %s\n' \
  "$version" "$text" "$author" "$changed"
