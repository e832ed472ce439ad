#!/bin/sh
# The build record: of this run without SOURCE_DATE_EPOCH, of the source alone with it, and a date
# that is none stops the emitter. Arguments: emit, project.
set -eu
emit=$1 project=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
unset SOURCE_DATE_EPOCH
LC_ALL=C
export LC_ALL
failed=0

# The lines from the module's name on, without the NUL behind the last.
record() { tr -d '\000' <"$1/emitted/sections/halyard.bin" | sed -n '/ospf_harbor_oper$/,$p' |
  sed '1s/.*ospf_harbor_oper/ospf_harbor_oper/'; }
expect_line() { # number, pattern
  if ! sed -n "$1p" "$work/record" | grep -qxE "$2"; then
    echo "line $1: expected $2, found: $(sed -n "$1p" "$work/record")"
    failed=1
  fi
}

"$emit" --build "$work/build/emitted" "$project"
record "$work/build" >"$work/record"
expect_line 1 'ospf_harbor_oper'
expect_line 2 "built by: $(id -un)"
expect_line 3 "on host: $(uname -n)"
expect_line 4 'pid: [1-9][0-9]*'
expect_line 5 "at: $(date -u +%Y)-[01][0-9]-[0-3][0-9] [0-2][0-9]:[0-5][0-9]:[0-6][0-9]\.[0-9]{9} UTC"
expect_line 6 "comment: build directory $work/build, generator $project/tools/emit"
[ "$(wc -l <"$work/record")" -eq 6 ] || { echo "expected 6 lines:"; cat "$work/record"; failed=1; }

cp "$work/build/emitted/sections/halyard.bin" "$work/first"
"$emit" --build "$work/build/emitted" "$project"
if cmp -s "$work/first" "$work/build/emitted/sections/halyard.bin"; then
  echo "two runs left one and the same record"
  failed=1
fi

mkdir "$work/project"
SOURCE_DATE_EPOCH=86399 "$emit" --build "$work/project/build/dev/emitted" "$work/project"
record "$work/project/build/dev" >"$work/record"
printf '%s\n' ospf_harbor_oper 'built by: withheld' 'on host: withheld' 'pid: 0' \
  'at: 1970-01-01 23:59:59.000000000 UTC' \
  'comment: build directory build/dev, generator tools/emit' | diff - "$work/record" || failed=1

SOURCE_DATE_EPOCH=0 "$emit" --build "$work/build/emitted" "$work/project"
record "$work/build" | grep -qx 'comment: build directory elsewhere, generator tools/emit' ||
  { echo "a build directory outside the project is named"; failed=1; }

cp "$work/build/emitted/sections/halyard.bin" "$work/first"
for date in tomorrow -1 12x '' 99999999999999999999; do
  if SOURCE_DATE_EPOCH=$date "$emit" --build "$work/build/emitted" "$project" 2>"$work/error"; then
    echo "SOURCE_DATE_EPOCH=$date passed"
    failed=1
  fi
  grep -qF "SOURCE_DATE_EPOCH is \"$date\", expected" "$work/error" ||
    { echo "SOURCE_DATE_EPOCH=$date: $(cat "$work/error")"; failed=1; }
done
cmp "$work/first" "$work/build/emitted/sections/halyard.bin" || failed=1
exit $failed
