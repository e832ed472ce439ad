#!/bin/sh
# Installs the packages into a fresh root with nothing in it but what a Debian has at least, and uses
# them there, as somebody would who never saw this folder. Before that, what the packages bring is
# compared with what `make install` brings. As root, since a root is made.
# Arguments: cmake, folder of the packages, build folder that they were made in, folder to work in,
# which keeps the bare root and what was downloaded for the next time.
set -eu
cmake=$1 packages=$2 build=$3 work=$4
here=$(cd "$(dirname "$0")" && pwd)
source=$(cd "$here/../.." && pwd)
if [ "$(id -u)" -ne 0 ]; then
  echo "found user $(id -un), expected root: a root is made" >&2
  exit 1
fi
mkdir -p "$work/cache"
work=$(cd "$work" && pwd)

# --- The same files as `make install` ---
rm -rf "$work/installed"
DESTDIR="$work/installed" "$cmake" --install "$build" >"$work/install.log"
(cd "$work/installed" && find . \( -type f -o -type l \)) | sed 's/\.gz$//' | sort >"$work/installed.txt"
for package in "$packages"/*.deb; do
  case $package in *-dbgsym_*) continue ;; esac
  dpkg-deb --fsys-tarfile "$package" | tar -t
done | grep -v '/$' | sed 's/\.gz$//' |
  grep -vE '^\./usr/share/doc/[^/]*/(changelog|copyright)$|^\./usr/share/lintian/' | sort >"$work/packed.txt"
diff -u "$work/installed.txt" "$work/packed.txt" || {
  echo "the packages bring other files (+) than make install (-)" >&2
  exit 1
}
echo "the packages bring the $(wc -l <"$work/packed.txt") files of make install"

# --- A bare root, made once ---
release=$(. /etc/os-release && echo "$VERSION_CODENAME")
if [ ! -e "$work/bare/made" ]; then
  rm -rf "$work/bare"
  # From where this system's own packages come.
  mirror=$(apt-get indextargets --format '$(REPO_URI)' "Codename: $release" | head -n 1)
  debootstrap --variant=minbase --cache-dir="$work/cache" "$release" "$work/bare" "$mirror" \
    >"$work/debootstrap.log" 2>&1 || { tail "$work/debootstrap.log" >&2; exit 1; }
  touch "$work/bare/made"
fi

# --- A fresh copy, thrown away ---
root=$work/root
rm -rf --one-file-system "$root"
cp -a "$work/bare" "$root"
mkdir "$root/packages" "$root/archives"
cp "$packages"/*.deb "$source/README.md" "$here/inside.sh" "$root/packages/"
cp /etc/resolv.conf "$root/etc/resolv.conf"
for settings in /etc/apt/apt.conf.d/*proxy*; do
  [ ! -e "$settings" ] || cp "$settings" "$root/etc/apt/apt.conf.d/"
done
# Mounts of its own, which end with it.
unshare --mount --propagation private sh -eu -c '
  root=$1 cache=$2
  mount -t proc proc "$root/proc"
  mount --bind /dev "$root/dev"
  mount --bind "$cache" "$root/archives"
  exec env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 \
    http_proxy="${http_proxy-}" https_proxy="${https_proxy-}" \
    chroot "$root" sh /packages/inside.sh' sh "$root" "$work/cache"
rm -rf --one-file-system "$root"
