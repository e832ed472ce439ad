#!/bin/sh
# Includes run one way: runtime, module, types, encodings, tables. The model includes only itself,
# the runtime nothing of the system, and the emitter nothing of the runtime's code. Argument: root.
set -eu
cd "$1"
failed=0
forbid() { # folder, pattern of includes that must not stand there
  found=$(grep -rnE "#include \"($2)/" "$1" --include='*.hpp' --include='*.cpp' --include='*.h' || true)
  if [ -n "$found" ]; then
    echo "$1 includes what stands above it:"
    echo "$found"
    failed=1
  fi
}
forbid src/model 'module|types|encodings|tables'
forbid src/module 'types|encodings|tables'
forbid src/types 'encodings|tables'
forbid src/encodings 'tables'
forbid runtime 'model|module|types|encodings|tables'
if grep -rn 'ospf' runtime/include runtime/src >/dev/null; then
  echo "the runtime knows of OSPF:"
  grep -rn 'ospf' runtime/include runtime/src | head
  failed=1
fi
exit $failed
