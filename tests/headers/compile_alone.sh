#!/bin/sh
# Every public header compiles alone, without a warning: those of C each as C99 and C++11, the chief
# ones in every later dialect too, those of C++ as C++20. Arguments: C compiler, C++ compiler, include
# folders.
set -eu
cc=$1 cxx=$2
shift 2
flags="-fsyntax-only -Wall -Wextra -Wpedantic -Werror"
for folder in "$@"; do flags="$flags -I$folder"; done
failed=0
checked=0
check() { # compiler, language, dialect, header
  checked=$((checked + 1))
  if ! printf '#include <%s>\n' "$4" | $1 -x "$2" -std="$3" $flags - 2>headers.log; then
    echo "$4 does not compile alone as $3:"
    cat headers.log
    failed=1
  fi
}
for folder in "$@"; do
  for header in $(cd "$folder" && find . -name '*.h' | sed 's|^\./||' | sort); do
    check "$cc" c c99 "$header"
    check "$cxx" c++ c++11 "$header"
  done
  for header in $(cd "$folder" && find . -name '*.hpp' | sed 's|^\./||' | sort); do
    check "$cxx" c++ c++20 "$header"
  done
done
for header in ospf_harbor_oper.h kelp/embed.h kelp/primitives.h; do
  for dialect in c11 c17; do check "$cc" c $dialect $header; done
  for dialect in c++14 c++17 c++20; do check "$cxx" c++ $dialect $header; done
done
echo "$checked compilations"
exit $failed
