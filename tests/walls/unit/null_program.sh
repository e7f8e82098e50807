#!/usr/bin/env bash
# Builds the program for no system at all and starts it: it says what it cannot do and ends by itself.
# usage: null_program.sh SOURCE FOLDER COMPILER [LAUNCHER]      exit status 1 when anything is not so.
set -u
source=$1 folder=$2 compiler=$3 launcher=${4:-}
fail() { echo "$1"; exit 1; }
{ cmake -S "$source" -B "$folder" -G Ninja -DKT_PLATFORM=null -DCMAKE_BUILD_TYPE=Debug \
    "-DCMAKE_CXX_FLAGS_DEBUG=-O0 -g1" "-DCMAKE_CXX_COMPILER=$compiler" "-DCMAKE_CXX_COMPILER_LAUNCHER=$launcher" &&
  cmake --build "$folder"; } > "$folder.log" 2>&1 || { tail -30 "$folder.log"; fail "It does not build."; }
program=$folder/HalvornInstaller.app/Contents/Null/HalvornInstaller
[ ! -e "$folder/HalvornInstaller.app/Contents/Resources/train" ] || fail "There is a tool for administrator rights."
allowed='^(libc|libm|libgcc_s|libstdc\+\+|ld-linux.*)\.so\.'
others=$(objdump -p "$program" | awk '$1 == "NEEDED" { print $2 }' | grep -Ev "$allowed")
[ -z "$others" ] || fail "It links $others."

# starts EXPECTED ARGUMENTS...: a line that the ordinary start-up logs with these arguments.
starts() {
  expected=$1; shift
  output=$(timeout 20 "$program" "$@" 2>&1 < /dev/null); status=$?
  [ "$status" -eq 1 ] || fail "Started with '$*' it ended with status $status: $output"
  grep -qF 'ERROR -- This system is not supported' <<< "$output" || fail "It does not say what it cannot do: $output"
  grep -qxF "HalvornInstaller: $expected" <<< "$output" || fail "'$expected' is not in its log: $output"
}
starts "direct invocation"
starts "missing source path"
starts "missing product signature" -sourcePath "$source" -productName Foo
starts "User applicationsDirectory: (null)" -sourcePath "$source" -productName Foo -productCode FOOO
