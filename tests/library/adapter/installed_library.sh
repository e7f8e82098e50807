#!/usr/bin/env bash
# Installs the library into a folder of its own, builds every example against it alone, and compares what they print.
# usage: installed_library.sh SOURCE BUILD FOLDER shared|static [COMPILER LAUNCHER]     exit status 1 when anything is wrong.
set -u
source=$1 build=$2 folder=$3 kind=$4 launcher=${5:-}
fail() { echo "$1"; exit 1; }
rm -rf "$folder"; mkdir -p "$folder/home"
install_component() { # COMPONENT PREFIX
  cmake --install "$build" --component "$1" --prefix "$2" >"$folder/install.log" 2>&1 ||
    { tail -20 "$folder/install.log"; fail "$1 cannot be installed."; }
}
install_component runtime "$folder/prefix"
# What programs load is whole, and nothing but libraries: what they are built with comes on top of it.
others=$(find "$folder/prefix" ! -type d ! -name 'libKTStuff*.so.1' ! -name 'libKTStuff*.so.1.*' ! -path '*/ktstuff-1/Halvorn*.so')
[ -z "$others" ] || fail "the component of programs that run has $others"
find "$folder/prefix" -type f | sort >"$folder/runtime"
install_component development "$folder/prefix"
changed=$(find "$folder/prefix" -type f -name '*.so*' | sort | diff "$folder/runtime" -)
[ -z "$changed" ] || fail "the component of headers has libraries, too: $changed"
static=OFF; [ "$kind" = shared ] || static=ON
for example in "$source"/examples/*/; do
  name=$(basename "$example")
  # Nothing of the tree can be found from here.
  cp -r "$example" "$folder/$name"
  { cmake -S "$folder/$name" -B "$folder/$name/build" -G Ninja -DCMAKE_BUILD_TYPE=Debug "-DCMAKE_PREFIX_PATH=$folder/prefix" \
      -DKTSTUFF_USE_STATIC_LIBS=$static "-DCMAKE_CXX_COMPILER_LAUNCHER=$launcher" &&
    cmake --build "$folder/$name/build"; } >"$folder/$name.log" 2>&1 || { tail -30 "$folder/$name.log"; fail "$name does not build."; }
  # A program that the library is a part of carries what is loaded late beside it.
  [ "$kind" = shared ] || cp "$folder"/prefix/lib*/ktstuff-1/*.so "$folder/$name/build/"
  env -i PATH=/usr/bin:/bin "HOME=$folder/home" LANG=C.UTF-8 timeout 60 "$folder/$name/build/$name" \
    >"$folder/$name.out" 2>"$folder/$name.err" || { cat "$folder/$name.err"; fail "$name ended with a failure."; }
  # What it prints of this machine stands before what is expected.
  [ "$(tail -n "$(wc -l <"$example/expected")" "$folder/$name.out")" = "$(cat "$example/expected")" ] ||
    { diff "$example/expected" "$folder/$name.out"; fail "$name prints something else."; }
  lines=$(wc -l <"$example/main.cpp"); [ "$lines" -le 30 ] || fail "$name has $lines lines."
done
# What a program loads: of the toolkit nothing, unless it is about how things look.
for name in texts programs quit alert; do
  toolkit=$(ldd "$folder/$name/build/$name" | grep -E 'libQt|libpulse|libcrypto')
  [ -z "$toolkit" ] || fail "$name loads $toolkit"
done
! ldd "$folder/texts/build/texts" | grep -qE 'dbus|expat' || fail "texts loads what texts do not need"
[ "$kind" = shared ] || exit 0
# The command, as it was installed, alone.
install_component tools "$folder/tools"
kt=$folder/tools/bin/kt
[ "$(env -i PATH=/usr/bin:/bin "HOME=$folder/home" LANG=C.UTF-8 "$kt" version 2.1b3 2.1)" = older ] || fail "kt does not compare versions"
[ "$("$kt" text md5 abc)" = 900150983cd24fb0d6963f7d28e17f72 ] || fail "kt finds no digests"
env -i PATH=/usr/bin:/bin "HOME=$folder/home" LANG=C.UTF-8 "$kt" micro 2>&1 | grep -q "no such resource" && fail "kt has no Micro"
[ -z "$(groff -man -ww -z "$folder"/tools/share/man/man1/kt.1 2>&1)" ] || fail "kt's manual has mistakes"
for word in $("$kt" --help | awk 'NR > 2 {print $1}' | sort -u); do
  grep -qw -- "$word" "$source/tools/kt/kt.1" || fail "kt's manual does not tell of $word"
done
# Every visible symbol has a version, and every one is of this library; what is promised stands in an installed header.
find "$folder/prefix/include" -name '*.h' -exec cat {} + | tr -cs 'A-Za-z0-9_' '\n' | LC_ALL=C sort -u >"$folder/declared"
for library in "$folder"/prefix/lib*/libKTStuff*.so; do
  others=$(nm -D --defined-only "$library" | awk '$3 !~ /^_Z.*7halvorn.*@@KTSTUFF_1(_PRIVATE)?$/ && $3 !~ /^KTSTUFF_1/' | head -5)
  [ -z "$others" ] || fail "$library shows $others"
  strangers=$(nm -D --defined-only "$library" | awk '$3 ~ /@@KTSTUFF_1$/ && match($3, /7halvorn[0-9]+/) {
    print substr($3, RSTART + RLENGTH, substr($3, RSTART + 8, RLENGTH - 8))}' | LC_ALL=C sort -u | LC_ALL=C comm -23 - "$folder/declared")
  [ -z "$strangers" ] || fail "$library promises $strangers"
  objdump -p "$library" | grep -qE 'SONAME +libKTStuff[A-Za-z]*\.so\.1$' || fail "$library has no version in its name"
done
# pkg-config tells the same.
flags=$(PKG_CONFIG_PATH=$(dirname "$(find "$folder/prefix" -name ktstuff-text.pc)") pkg-config --cflags --libs ktstuff-text) ||
  fail "pkg-config does not know the library"
# shellcheck disable=SC2086 # a list of options
$launcher c++ "$source/examples/texts/main.cpp" -o "$folder/texts_pc" $flags "-Wl,-rpath,$(dirname "$(find "$folder/prefix" -name libKTStuffText.so)")" ||
  fail "pkg-config's flags do not build"
[ "$("$folder/texts_pc")" = "$(cat "$source/examples/texts/expected")" ] || fail "with pkg-config's flags it prints something else"
