#!/bin/sh
# Installs a build into a folder of its own, whose name has a space, and uses it from there: the tool
# by itself, the Python package, and the examples built once through pkg-config and once through the
# CMake package.
# Arguments: cmake, build folder, folder of the examples.
set -eu
cmake=$1 build=$2 examples=$3
unset LD_LIBRARY_PATH
box=$(mktemp -d)
trap 'rm -rf "$box"' EXIT
root="$box/a tree"
"$cmake" --install "$build" --prefix "$root" >"$box/install.log"
lib=$(dirname "$(find "$root" -name 'libkelp.so')")

"$root/bin/ospf-harbor" show area/0.0.0.0/interface/core --from "$examples/data/campus/r1" |
  grep -q 'name@kelp_vstring:core'
"$root/bin/ospf-harbor" inspect "$lib/libospf_harbor_oper.so" | grep -q 'ospf_interface'

packages=$(dirname "$(dirname "$(find "$root" -name '_rows.abi3.so')")")
printf '%s\n' 'import ospf_harbor' 'areas = ospf_harbor.Database().table("ospf_area", "x", create=True)' \
  'print(areas.add(area_id="0.0.0.51"))' >"$box/area.py"
PYTHONDONTWRITEBYTECODE=1 PYTHONPATH="$packages" python3 "$box/area.py" | grep -q 'area_id@u_int32:51'

PKG_CONFIG_PATH=$(dirname "$(find "$root" -name kelp.pc)")
export PKG_CONFIG_PATH
check() { # program: each example prints what it should
  case $1 in
  *areas) "$1" | grep -q '^area 51: 1 interface' ;;
  *) "$1" | grep -q 'area_id@u_int32:51' ;;
  esac
}
for example in area two_areas; do
  eval "cc '$examples/$example.c' -o '$box/$example' -Wl,-rpath,'$lib' \
    $(pkg-config --cflags --libs ospf_harbor_oper)"
  check "$box/$example"
done

eval "c++ -std=c++20 '$examples/areas.cpp' -o '$box/areas' -Wl,-rpath,'$lib' \
  $(pkg-config --cflags --libs ospf_harbor_oper)"
check "$box/areas"

cat >"$box/check.c" <<END
#include <ospf_harbor_check.h>
int main(void) {
  const char image[5] = {0, 0, 0, 0, 1};
  return (int)ospf_harbor_check_image(OSPF_HARBOR_CHECK_OBJECT, "address_family", image, 5, 0);
}
END
eval "cc '$box/check.c' -o '$box/check' -Wl,-rpath,'$lib' \
  $(pkg-config --cflags --libs ospf_harbor_check)"
"$box/check"

mkdir "$box/user"
cat >"$box/user/CMakeLists.txt" <<END
cmake_minimum_required(VERSION 3.25)
project(user LANGUAGES C)
find_package(ospf_harbor_oper 1 REQUIRED)
foreach(example area two_areas)
  add_executable(\${example} $examples/\${example}.c)
  target_link_libraries(\${example} PRIVATE ospf_harbor_oper::ospf_harbor_oper
                                            ospf_harbor_oper::kelp)
endforeach()
END
"$cmake" -S "$box/user" -B "$box/user/build" -DCMAKE_PREFIX_PATH="$root" >"$box/user.log" 2>&1 ||
  { cat "$box/user.log"; exit 1; }
"$cmake" --build "$box/user/build" >"$box/user.log" 2>&1 || { cat "$box/user.log"; exit 1; }
for example in area two_areas; do check "$box/user/build/$example"; done

# What is left to do after an installation is said where the loader does not look.
"${0%/*}/../../tools/setup/after-install.sh" "$lib" | grep -qF -- "-Wl,-rpath,'$lib'"
echo "an installed copy runs, and serves Python, pkg-config and CMake"
