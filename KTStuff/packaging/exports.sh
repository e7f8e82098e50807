#!/bin/sh
# The version script of a shared library: exports.sh VERSION NM ARCHIVE... writes it to standard output.
# What is declared in an installed header has the version KTSTUFF_<n>. What our own libraries ask of each other, defined in
# the archives, has a version of its own that says so; everything else is hidden.
version=$1 nm=$2; shift 2
echo "KTSTUFF_$version {"
echo "  global:"
for kind in N NK TIN TSN TVN TTN GVN 'Thn*_N' 'Thn*_NK' 'Tv*_N' 'Tv*_NK'; do echo "    _Z${kind}7halvorn*;"; done
echo "  local: *;"
echo "};"
own=$("$nm" --defined-only --extern-only "$@" 2>/dev/null |
  awk 'NF == 3 && $2 ~ /^[TDBR]$/ && $3 ~ /^_Z.*7halvorn/ && $3 !~ /7halvorn8KTSystem/ {print "    " $3 ";"}' | sort -u)
[ -n "$own" ] || exit 0
echo "KTSTUFF_${version}_PRIVATE {"
echo "  global:"
echo "$own"
echo "};"
