#!/bin/sh
# The C that the README shows stands in examples/area.c, line for line, and so is compiled and run
# with every fault.
here=$(dirname "$0")
exec python3 - "$here/../README.md" "$here/area.c" <<'PYTHON'
import re
import sys

readme, program = (open(path).read() for path in sys.argv[1:])
shown = re.findall(r"^```c\n(.*?)^```$", readme, re.M | re.S)
if not shown:
    sys.exit("README.md: found no C, expected a part of examples/area.c")
for part in shown:
    if part not in program:
        sys.exit("README.md: found C that examples/area.c does not have:\n" + part)
PYTHON
