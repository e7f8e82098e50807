#!/bin/sh
# The version script of the shared libraries: exports.sh VERSION NM SOURCES ARCHIVE... writes it to standard output.
# What is declared in an installed header has the version KTSTUFF_<n>. Every other name of ours in the archives has a version
# of its own that says so: our own libraries ask it of each other. Everything else is hidden.
version=$1 nm=$2 sources=$3; shift 3
echo "KTSTUFF_$version {"
echo "  global:"
for kind in N NK TIN TSN TVN TTN GVN 'Thn*_N' 'Thn*_NK' 'Tv*_N' 'Tv*_NK'; do echo "    _Z${kind}7halvorn*;"; done
echo "  local: *;"
echo "};"
own=$({
  # The words of the installed headers, one to a line, then a line of its own, then the names in the archives.
  find "$sources/Core" "$sources/KTStuff" "$sources/Platform" -name '*.h' ! -path '*/linux/*' ! -path '*/posix/*' \
    ! -path '*/null/*' ! -path '*/mac/*' -exec sed 's|//.*||' {} + | tr -cs 'A-Za-z0-9_' '\n' | sort -u
  echo -
  "$nm" --defined-only --extern-only "$@" 2>/dev/null | awk 'NF == 3 && $2 ~ /^[TDBRWVu]$/ {print $3}' | sort -u
} | awk '
  $0 == "-" {inNames = 1; next}
  !inNames {declared[$0] = 1; next}
  # The first name in our name space, behind its length; an operator has none and is public with its header.
  match($0, /^_Z.*7halvorn[0-9]+/) && match($0, /7halvorn[0-9]+/) {
    size = substr($0, RSTART + 8, RLENGTH - 8)
    if (!(substr($0, RSTART + RLENGTH, size) in declared) || $0 ~ /7halvorn8KTSystem5Parts/) print "    " $0 ";"
  }')
[ -n "$own" ] || exit 0
echo "KTSTUFF_${version}_PRIVATE {"
echo "  global:"
echo "$own"
echo "};"
