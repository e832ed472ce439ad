#!/bin/sh
# Installs a build into a folder of its own and builds an example against it, once through pkg-config
# and once through the CMake package. Arguments: cmake, build folder, example source.
set -eu
cmake=$1 build=$2 example=$3
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
"$cmake" --install "$build" --prefix "$root/usr" >"$root/install.log"
pc=$(dirname "$(find "$root/usr" -name kelp.pc)")
sed -i "s|^prefix=.*|prefix=$root/usr|" "$pc"/*.pc
lib=$(dirname "$(find "$root/usr" -name 'libkelp.so')")
PKG_CONFIG_PATH=$pc
export PKG_CONFIG_PATH
cc "$example" -o "$root/by_pkg_config" $(pkg-config --cflags --libs ospf_harbor_oper)
LD_LIBRARY_PATH=$lib "$root/by_pkg_config" | grep -q 'area_id@u_int32:51'

cat >"$root/check.c" <<END
#include <ospf_harbor_check.h>
int main(void) {
  const char image[5] = {0, 0, 0, 0, 1};
  return (int)ospf_harbor_check_image(OSPF_HARBOR_CHECK_OBJECT, "address_family", image, 5, 0);
}
END
cc "$root/check.c" -o "$root/check" $(pkg-config --cflags --libs ospf_harbor_check)
LD_LIBRARY_PATH=$lib "$root/check"

mkdir "$root/user"
cat >"$root/user/CMakeLists.txt" <<END
cmake_minimum_required(VERSION 3.25)
project(user LANGUAGES C)
find_package(ospf_harbor_oper 1 REQUIRED)
add_executable(by_cmake $example)
target_link_libraries(by_cmake PRIVATE ospf_harbor_oper::ospf_harbor_oper ospf_harbor_oper::kelp)
END
"$cmake" -S "$root/user" -B "$root/user/build" -DCMAKE_PREFIX_PATH="$root/usr" >"$root/user.log" 2>&1 ||
  { cat "$root/user.log"; exit 1; }
"$cmake" --build "$root/user/build" >"$root/user.log" 2>&1 || { cat "$root/user.log"; exit 1; }
"$root/user/build/by_cmake" | grep -q 'area_id@u_int32:51'
echo "installed copy serves pkg-config and CMake"
