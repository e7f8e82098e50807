# What the Debian packages have in common. Sourced with the folder that gets them in $folder and their time in $3, with
#   begin NAME; put files below $root; finish <<CONTROL
export LC_ALL=C SOURCE_DATE_EPOCH=$3
here=$(dirname "$(readlink -f "$0")")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
umask 022
architecture=$(dpkg --print-architecture)
maintainer='The Halvorn Installer authors <authors@halvorn.example>'

begin() {
  name=$1 root=$work/$1
  mkdir -p "$root/DEBIAN" "$root/usr"
}

put() { install -D -m "${3:-644}" "$1" "$root/$2"; }

document() {
  local documents=usr/share/doc/$name
  { printf 'Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/\nUpstream-Name: Halvorn Installer\n\nFiles: *\n'
    printf 'Copyright: 2026 The Halvorn Installer authors\nLicense: Expat\n'
    sed -e '1,4d' -e 's/^$/./; s/^/ /' "$here/../../LICENSE"; } >"$work/copyright"
  put "$work/copyright" "$documents/copyright"
  printf '%s (%s) unstable; urgency=medium\n\n  * The changes are told in CHANGELOG.md of the source.\n\n -- %s  %s\n' "$name" "$version" \
    "$maintainer" "$(date -u -R -d "@$SOURCE_DATE_EPOCH")" >"$work/changelog"
  put "$work/changelog" "$documents/changelog"
  gzip -9n "$root/$documents/changelog"
}

# dependencies FILE...: what the programs link, as the release names it; our own libraries by $work/debian/shlibs.local.
dependencies() {
  mkdir -p "$work/debian"
  printf 'Source: %s\n\nPackage: %s\nArchitecture: any\n' "$name" "$name" >"$work/debian/control"
  (cd "$work" && dpkg-shlibdeps -O --ignore-missing-info -l"$work/libktstuff1/usr/lib" "$@" 2>/dev/null | sed 's/^shlibs:Depends=//')
}

# Writes the package. The control file comes on standard input, without what is told of each package alike.
finish() {
  document
  { printf 'Package: %s\nVersion: %s\nMaintainer: %s\nInstalled-Size: %s\nPriority: optional\n' "$name" "$version" "$maintainer" \
      "$(du -sk --apparent-size "$root/usr" | cut -f1)"
    cat; } >"$root/DEBIAN/control"
  (cd "$root" && find usr -type f -print0 | sort -z | xargs -0 md5sum) >"$root/DEBIAN/md5sums"
  find "$root" -newermt "@$SOURCE_DATE_EPOCH" -print0 | xargs -0 -r touch --no-dereference --date="@$SOURCE_DATE_EPOCH"
  dpkg-deb --root-owner-group -Zxz --build "$root" "$folder" >/dev/null
}
