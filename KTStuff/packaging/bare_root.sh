#!/usr/bin/env bash
# Builds and runs every example in a system that has nothing but a compiler, CMake, the installed library, and what that loads.
# usage: bare_root.sh BUILD FOLDER     as root, for a root folder is made there; exit status 1 when anything is wrong.
set -eu
build=$1 root=$2/root
source=$(cd "$(dirname "$0")/../.." && pwd)
fail() { echo "$1"; exit 1; }
# The libraries that ours load, by the packages they come from; no header of any of them.
packages=$(ldd "$build"/libKTStuff*.so "$build"/HalvornInstaller.app/Contents/Linux/Halvorn*.so |
  awk '$3 ~ /^\// {print $3}' | grep -v libKTStuff | sort -u | while read -r file; do
  dpkg -S "$(readlink -f "$file")" "$file" 2>/dev/null | head -n 1 | cut -d: -f1; done | sort -u | paste -sd,)
[ -n "$packages" ] || fail "what the libraries load is unknown"
release=$(. /etc/os-release && echo "$VERSION_CODENAME")
if [ ! -d "$root" ]; then
  mmdebstrap --quiet --variant=minbase --include="g++,cmake,ninja-build,$packages" "$release" "$root" >"$2/root.log" 2>&1 ||
    { tail -5 "$2/root.log"; fail "there is no bare root"; }
fi
for component in runtime development tools; do
  DESTDIR=$root cmake --install "$build" --component "$component" --prefix /usr >"$2/install.log" 2>&1 || fail "$component cannot be installed"
done
rm -rf "$root/examples"; cp -r "$source/examples" "$root/examples"
chroot "$root" ldconfig
for example in "$root"/examples/*/; do
  name=$(basename "$example")
  chroot "$root" sh -c "cd /examples/$name && cmake -G Ninja -S . -B build && cmake --build build" >"$2/$name.log" 2>&1 ||
    { tail -20 "$2/$name.log"; fail "$name does not build"; }
  chroot "$root" env -i PATH=/usr/bin:/bin HOME=/tmp LANG=C.UTF-8 timeout 60 "/examples/$name/build/$name" >"$2/$name.out" ||
    fail "$name ended with a failure"
  [ "$(tail -n "$(wc -l <"$example/expected")" "$2/$name.out")" = "$(cat "$example/expected")" ] ||
    { diff "$example/expected" "$2/$name.out"; fail "$name prints something else"; }
  echo "$name: $(wc -l <"$example/main.cpp") lines, prints what its page shows"
done
[ "$(chroot "$root" kt version 2.1b3 2.1)" = older ] || fail "kt does not compare versions"
echo "$(chroot "$root" dpkg-query -W | wc -l) packages in the root, $(echo "$packages" | tr , '\n' | wc -l) of them for the libraries"
