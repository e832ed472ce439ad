#!/bin/sh
# Run in the fresh root: installs what lies beside this script and uses it in every way that the
# packages are for, then removes it and looks that nothing stays.
set -eu
export DEBIAN_FRONTEND=noninteractive
here=/packages box=/tmp/box examples=/usr/share/doc/ospf-harbor-doc/examples
mkdir -p "$box"

install() {
  apt-get -o Dir::Cache::Archives=/archives -qq -y --no-install-recommends install "$@" \
    >"$box/apt.log" 2>&1 || { tail -n 30 "$box/apt.log" >&2; exit 1; }
}
wrong() { # what, found, expected
  printf '%s: found %s, expected %s\n' "$1" "$2" "$3" >&2
  exit 1
}
same() { # what, found, expected
  [ "$2" = "$3" ] || wrong "$1" "$2" "$3"
}
has() { # what, text, part
  case $2 in *"$3"*) ;; *) wrong "$1" "$2" "$3" ;; esac
}

apt-get -qq update >"$box/apt.log" 2>&1 || { cat "$box/apt.log" >&2; exit 1; }

# Each alone brings what it needs: nothing is missing that another of them happens to bring.
install "$here"/libkelp1_*.deb "$here"/libospf-harbor-*1_*.deb "$here"/ospf-harbor_*.deb \
  "$here"/ospf-harbor-doc_*.deb
echo "installed: the tool, on a bare root"

# --- The tool, as README.md shows it ---
cd "$examples/.."
awk '/^\$ ospf-harbor neighbors/ { on = 1; next } /^```/ { on = 0 } on' "$here/README.md" >"$box/shown"
ospf-harbor neighbors --v2 --area 0 --from examples/data/campus/all.pcap >"$box/said"
diff "$box/shown" "$box/said" || wrong "the neighbours of the example" "others" "those of README.md"
has "an interface of the example" \
  "$(ospf-harbor show area/0.0.0.0/interface/core --from examples/data/campus/r1)" name@kelp_vstring:core
cd /
version=$(dpkg-query -W -f '${Version}' ospf-harbor)
same "the version" "$(ospf-harbor --version)" "ospf-harbor $version"
echo "works: the tool"

# --- The service: its user may listen, and its group looks ---
install libcap2-bin iproute2 systemd util-linux
systemd-analyze verify --man=no ospf-harbor-collect@lo.service >"$box/verify" 2>&1 || true
! grep -i 'ospf-harbor' "$box/verify" || wrong "the service" "the above" "nothing to say of it"
folder=/var/lib/ospf-harbor
home=$(getent passwd ospf-harbor | cut -d: -f6)
same "the folder of the service's user" "$home" "$folder"
mkdir -p "$folder" && chown ospf-harbor:ospf-harbor "$folder" && chmod 2770 "$folder"
command=$(sed -n "s/%[iI]/lo/g; s|\${STATE_DIRECTORY}|$folder|; s/^ExecStart=//p" \
  /usr/lib/systemd/system/ospf-harbor-collect@.service)
(umask 007 && setpriv --reuid ospf-harbor --regid ospf-harbor --clear-groups --bounding-set -all,+net_raw \
  --inh-caps -all,+net_raw --ambient-caps -all,+net_raw --no-new-privs $command --seconds 1) \
  >"$box/said" 2>&1 || [ $? -eq 1 ] || wrong "the service" "$(cat "$box/said")" "that it listens"
useradd -G ospf-harbor looker
setpriv --reuid looker --regid looker --init-groups ospf-harbor store check "$folder/lo.store" \
  >/dev/null || wrong "the store of the service" "that its group cannot" "that it looks"
rm -rf "$folder"
userdel looker
echo "works: the service"

# --- Man pages and completion ---
install man-db bash-completion zsh fish
for page in ospf-harbor ospf-harbor-load-capture ospf-harbor-collect; do
  has "the page $page" "$(man "$page" | cat)" "EXIT STATUS"
done
has "whatis" "$(mandb -q; whatis ospf-harbor-lsdb)" "ospf-harbor-lsdb (1)"
same "bash at 'load '" "$(bash -c '. /usr/share/bash-completion/bash_completion
  _completion_loader ospf-harbor; COMP_WORDS=(ospf-harbor lo) COMP_CWORD=1; _ospf_harbor
  echo ${COMPREPLY[@]}')" load
same "fish at 'load '" "$(fish -c 'complete -C "ospf-harbor load "' | cut -f1 | sort | tr '\n' ' ')" \
  "capture frr "
has "fish at an option" "$(fish -c 'complete -C "ospf-harbor lsdb --adv"')" "--adv-router"
same "zsh knows" "$(zsh -fc 'autoload -Uz compinit; compinit -u; echo $_comps[ospf-harbor]')" _ospf-harbor
at_zsh() { # words...
  zsh -fc 'autoload -Uz _ospf-harbor
    _describe() { [[ $1 == -o ]] && shift; for each in "${(@P)2}"; do echo "${each%%:*}"; done }
    _files() { }
    compdef() { }
    words=("$@") CURRENT=$#; _ospf-harbor' zsh "$@" | sort | tr '\n' ' '
}
same "zsh at 'load '" "$(at_zsh ospf-harbor load '')" "capture frr "
has "zsh at an option" "$(at_zsh ospf-harbor lsdb --adv)" "--adv-router "
echo "works: man pages, completion for bash, zsh and fish"

# --- Python, as README.md shows it ---
install "$here"/python3-ospf-harbor_*.deb
awk '/^```python/ { on = 1; next } /^```/ { on = 0 } on' "$here/README.md" >"$box/example.py"
(cd "$examples/.." && sed 's|r1.store|/tmp/box/r1.store|' "$box/example.py" | python3 - >"$box/said")
has "the Python of README.md" "$(cat "$box/said")" "core"
python3 - <<'END' || wrong "Python" "an error" "an area"
import ospf_harbor
areas = ospf_harbor.Database().table('ospf_area', 'areas', create=True)
assert areas.add(area_id='0.0.0.51').area_id == 51 and areas.to_dicts()[0]['area_id'] == 51
END
echo "works: import ospf_harbor"

# --- Programs that are built against it ---
install "$here"/libospf-harbor-oper-dev_*.deb pkg-config cmake g++ make
check() { # program
  said=$("$1")
  case $1 in
  *area) has "$1" "$said" area_id@u_int32:51 ;;
  *) has "$1" "$said" "area 51: 1 interface" ;;
  esac
}
flags=$(pkg-config --cflags --libs ospf_harbor_oper)
same "the version of the -dev package" "$(pkg-config --modversion ospf_harbor_oper)" "$version"
cc "$examples/area.c" -o "$box/area" $flags && check "$box/area"
cc "$examples/two_areas.c" -o "$box/two_areas" $flags && check "$box/two_areas"
c++ -std=c++20 "$examples/areas.cpp" -o "$box/areas" $flags && check "$box/areas"
printf '%s\n' '#include <ospf_harbor_check.h>' 'int main(void) {' \
  '  const char image[5] = {0, 0, 0, 0, 1};' \
  '  return (int)ospf_harbor_check_image(OSPF_HARBOR_CHECK_OBJECT, "address_family", image, 5, 0); }' \
  >"$box/check.c"
cc "$box/check.c" -o "$box/check" $(pkg-config --cflags --libs ospf_harbor_check) && "$box/check"
cat >"$box/CMakeLists.txt" <<END
cmake_minimum_required(VERSION 3.25)
project(user LANGUAGES C CXX)
find_package(ospf_harbor_oper $version REQUIRED)
set(CMAKE_CXX_STANDARD 20)
foreach(example area.c two_areas.c areas.cpp)
  get_filename_component(name \${example} NAME_WE)
  add_executable(\${name} $examples/\${example})
  target_link_libraries(\${name} PRIVATE ospf_harbor_oper::ospf_harbor_oper ospf_harbor_oper::kelp)
endforeach()
END
(cmake -S "$box" -B "$box/built" && cmake --build "$box/built") >"$box/cmake.log" 2>&1 ||
  { cat "$box/cmake.log" >&2; exit 1; }
for example in area two_areas areas; do check "$box/built/$example"; done
echo "works: pkg-config and find_package, in C and C++"

# --- Removed, nothing of it stays ---
apt-get -qq -y purge 'libkelp1' 'libospf-harbor*' 'ospf-harbor*' 'python3-ospf-harbor' >"$box/apt.log" 2>&1 ||
  { cat "$box/apt.log" >&2; exit 1; }
stays=$(find / -xdev \( -path /proc -o -path /dev -o -path /tmp -o -path /var/lib/dpkg -o -path "$here" \
  -o -path /archives -o -path /var/cache/man \) -prune -o \( -name '*ospf*' -o -name 'libkelp*' -o -path '*/kelp/*' \) -print)
same "what stays" "$stays" ""
echo "removed, and nothing stays"
