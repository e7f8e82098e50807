#!/usr/bin/env bash
# Whether a tree that adds this one builds, with a program that uses a part, what that part loads when it is needed.
# usage: added_library.sh SOURCE FOLDER COMPILER     exit status 1 when not.
set -u
source=$1 folder=$2 compiler=$3
fail() { echo "$1"; exit 1; }
rm -rf "$folder"; mkdir -p "$folder"
cat >"$folder/CMakeLists.txt" <<TEXT
cmake_minimum_required(VERSION 3.25)
project(another LANGUAGES C CXX)
add_subdirectory($source library EXCLUDE_FROM_ALL)
foreach(part Text Sound)
  add_executable(\${part} $source/examples/texts/main.cpp)
  target_link_libraries(\${part} PRIVATE KTStuff::\${part})
endforeach()
TEXT
for static in OFF ON; do
  cmake -S "$folder" -B "$folder/build" -G Ninja "-DCMAKE_CXX_COMPILER=$compiler" -DKTSTUFF_USE_STATIC_LIBS=$static \
    >"$folder/log" 2>&1 || { tail -20 "$folder/log"; fail "the tree cannot be added to another one"; }
  for pair in Text:HalvornDigests Sound:HalvornSound; do
    # The commands are told without doing them, which takes minutes.
    ninja -C "$folder/build" -t commands "${pair%:*}" | grep -q -- "-o [^ ]*${pair#*:}.so" ||
      fail "${pair%:*} does not build ${pair#*:} (static: $static)"
  done
done
ninja -C "$folder/build" -t commands ktstuff_Text_shared | grep -q "create_symlink [^ ]*HalvornDigests.so [^ ]*/ktstuff-1/" ||
  fail "a shared library would not find what it loads"
