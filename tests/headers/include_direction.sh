#!/bin/sh
# Includes run one way. A house is a folder of floors, and each floor names the floors below that it
# may include; a folder that is no floor yet fails, so that a new one gets its place here. Held so:
# src/ (runtime, module, types, encodings, tables; the model includes only itself, the runtime
# nothing of the system) and runtime/src (base, store, parts, database, calls, with primitives, text,
# wire, xml, tree and trace beside; calls, what stands beside, and base's guards alone export
# anything). Of libs/ each library names those that it may include; nothing includes another unit's
# src/ or tests/, but tests/support and tests/harness, which all share. Argument: root.
set -eu
cd "$1"
failed=0
complain() { # heading, lines
  [ -n "$2" ] || return 0
  printf '%s:\n%s\n' "$1" "$2"
  failed=1
}
includes() { # folder, pattern of the first part of the included path
  grep -rnE "#include [\"<]($2)[/\">]" "$1" \
    --include='*.hpp' --include='*.cpp' --include='*.h' --include='*.c' || true
}

# Each line of a house: a floor, and the floors that it may include besides itself.
house() { # folder, floors
  names=$(printf '%s\n' "$2" | sed 's/:.*//')
  for folder in "$1"/*/; do
    name=$(basename "$folder")
    printf '%s\n' "$names" | grep -qx "$name" || complain "$1/$name is no floor that is known" "$2"
  done
  while IFS=: read -r name below; do
    [ -d "$1/$name" ] || continue
    above=$(printf '%s\n' "$names" | grep -vx "$name" | while read -r other; do
      case " $below " in *" $other "*) ;; *) printf '%s|' "$other" ;; esac
    done)
    [ -n "$above" ] || continue
    complain "$1/$name includes what stands above or beside it" "$(includes "$1/$name" "${above%|}")"
  done <<FLOORS
$2
FLOORS
}

house src 'model:
module: model
types: model module
encodings: model module types
tables: model module types encodings'

house runtime/src 'base:
store: base
parts: base store
database: base store parts
calls: base store parts database
text: base
wire: base
xml: base text
primitives: base text wire xml
tree: base
trace: base'

complain "the runtime includes of the system" "$(includes runtime 'model|module|types|encodings|tables')"
complain "the runtime knows of OSPF" "$(grep -rn 'ospf' runtime/include runtime/src | head || true)"
for floor in store parts database; do
  [ -d "runtime/src/$floor" ] || continue
  complain "runtime/src/$floor exports a function" "$(grep -rnE 'extern "C"|KELP_API' \
    "runtime/src/$floor" || true)"
done

# Each library, and the libraries that it may include besides itself. Of these it sees include/ alone:
# a path into src/ or out of its own folder does not stand anywhere below libs/.
libraries='library-sections:
lsa-vocabulary:
ospf-decode: lsa-vocabulary
ospf-events: lsa-vocabulary ospf-decode
ospf-findings: lsa-vocabulary ospf-decode ospf-events ospf-routes ospf-tables
ospf-harbor-check:
ospf-tables: lsa-vocabulary
capture-rows: lsa-vocabulary ospf-decode ospf-tables
ospf-routes: ospf-tables lsa-vocabulary
router-answers: capture-rows lsa-vocabulary ospf-decode ospf-tables
tree-exchange: ospf-harbor-check ospf-tables
ospf-replication: ospf-harbor-check ospf-tables tree-exchange'
for folder in libs/*/; do
  name=$(basename "$folder")
  printf '%s\n' "$libraries" | grep -q "^$name:" || complain "libs/$name has no place yet" "$libraries"
done
while IFS=: read -r name below; do
  for other in libs/*/; do
    other=$(basename "$other")
    case " $name $below " in *" $other "*) continue ;; esac
    for header in "libs/$other/include"/*; do
      complain "libs/$name includes what stands above or beside it" \
        "$(includes "libs/$name" "$(basename "$header")")"
    done
  done
  complain "libs/$name includes of the rules, of their tests or of a program" "$(includes "libs/$name" \
    'module|types|encodings|tables|whole_schema|messages|sections|commands|views|sources|traces')"
done <<LIBRARIES
$libraries
LIBRARIES
complain "an include leaves its unit" "$(grep -rnE '#include "\.\./(\.\./|src/)|#include "[^"]*/(src|tests)/' \
  libs tools bench runtime --include='*.hpp' --include='*.cpp' || true)"
complain "the tool includes of the rules or their tests" "$(includes tools/ospf-harbor \
  'model|module|types|encodings|tables|whole_schema|messages|sections')"
exit $failed
