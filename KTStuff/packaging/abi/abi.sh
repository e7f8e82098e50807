#!/usr/bin/env bash
# Whether programs that were built with the last release run with these libraries: their interface beside the one that is kept
# here. Only what has the version KTSTUFF_1 is promised; new names are no break.
# usage: abi.sh compare|keep BUILD     `keep` is for a release: it replaces what is kept.
set -u
what=$1 build=$2
here=$(cd "$(dirname "$0")" && pwd)
work=$build/abi-check
rm -rf "$work"; mkdir -p "$work"
# What is kept says nothing of types that are declared elsewhere: they are nobody else's business.
(cd "$here/../../.." && find Core KTStuff Platform -name '*.h' ! -path '*/linux/*' ! -path '*/posix/*' ! -path '*/null/*' \
  ! -path '*/mac/*' -exec cp --parents -t "$work" {} +)
status=0
for library in "$build"/libKTStuff*.so; do
  name=$(basename "$library")
  if [ "$what" = keep ]; then
    abidw --no-corpus-path --no-comp-dir-path --no-show-locs --no-parameter-names --no-elf-needed --drop-private-types --headers-dir "$work" \
      --suppressions "$here/promised" "$(readlink -f "$library")" | xz -9 >"$here/$name.abi.xz" || status=1
    continue
  fi
  xz -dc "$here/$name.abi.xz" >"$work/$name.abi" || { echo "$name: nothing is kept of it"; status=1; continue; }
  abidiff --no-added-syms --no-show-locs --suppressions "$here/promised" "$work/$name.abi" "$(readlink -f "$library")" \
    >"$work/$name.report" 2>&1 ||
    { echo "$name is not what it was:"; head -60 "$work/$name.report"; status=1; }
done
for kept in "$here"/*.abi.xz; do
  [ -e "$build/$(basename "$kept" .abi.xz)" ] || { echo "$(basename "$kept" .abi.xz) is gone"; status=1; }
done
exit "$status"
