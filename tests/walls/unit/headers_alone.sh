#!/usr/bin/env bash
# Compiles every header of the tree by itself: a header that needs another must include it.
# usage: headers_alone.sh COMPILER ROOT FLAGS...    Prints the headers that fail; exit status 1 when any does.
set -u
compiler=$1 root=$2; shift 2
cd "$root" || exit 2
export compiler flags="$*"
one() {
  out=$(printf '#include "%s"\n' "$1" | $compiler -std=c++20 -I. $flags -fsyntax-only -x c++ - 2>&1) && exit 0
  printf '%s does not compile alone:\n%s\n' "$1" "$(printf '%s' "$out" | grep -m 3 error)"
  exit 1
}
export -f one
count=$(find Core KTStuff Platform Sources train -name '*.h' | wc -l)
[ "$count" -gt 60 ] || { echo "only $count headers found"; exit 2; }
find Core KTStuff Platform Sources train -name '*.h' -print0 | xargs -0 -P "$(nproc)" -I{} bash -c 'one "$1"' _ {}
