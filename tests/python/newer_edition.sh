#!/bin/sh
# The Python package over a library of the newer edition of the schema: what an edition adds is there
# by itself, and holds what the loops over the model ask of every type and table. Arguments: the
# edition's emitter, its library, the package, the folders of the other libraries, the interpreter.
set -eu
emitter=$1 library=$2 package=$3 libraries=$4 python=$5
here=$(cd "$(dirname "$0")" && pwd)
box=$(mktemp -d)
trap 'rm -rf "$box"' EXIT
"$emitter" --source "$box/project"
cp -rL "$package" "$box/ospf_harbor"
cp "$box/project/docs/model.json" "$box/project/python/ospf_harbor/_types.pyi" "$box/ospf_harbor"
mkdir "$box/lib"
ln -s "$library" "$box/lib/libospf_harbor_oper.so.1"
export PYTHONPATH="$box" PYTHONDONTWRITEBYTECODE=1 OSPF_HARBOR_LIBRARIES="$box/lib:$libraries"
"$python" -c 'import ospf_harbor
area = ospf_harbor.OspfArea(spf_runs=7)
assert area.variant == 2 and ospf_harbor.OspfArea.from_image(area.to_image()).spf_runs == 7'
cd "$here"
"$python" -m unittest test_schema
