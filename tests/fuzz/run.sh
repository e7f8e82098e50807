#!/bin/sh
# Builds the fuzz targets with Clang and runs each of them for a minute, or as many seconds as the first argument says.
#
#   tests/fuzz/run.sh [SECONDS [TARGET...]]
#
# New inputs and crashes stay in build/fuzz; a crash ends the run with status 1 and the path of its input.
set -eu
root=$(cd "$(dirname "$0")/../.." && pwd)
build=${KT_FUZZ_BUILD:-$root/build/fuzz}
seconds=${1:-60}
[ $# -gt 0 ] && shift
targets=${*:-escapes numbers patterns scalars percent pages html encodings regex}
command -v clang++ >/dev/null || { echo "clang++ is missing (packages clang and libclang-rt-dev)" >&2; exit 2; }

cmake -S "$root" -B "$build" -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_C_COMPILER=clang -DCMAKE_BUILD_TYPE=Debug \
  -DCMAKE_CXX_FLAGS_DEBUG="-O1 -g1 -fsanitize=fuzzer-no-link" -DKT_SANITIZE=address,undefined -DKT_FUZZ=ON \
  -DKT_TOUR_ONLY=ON >"$build.log" 2>&1 || { cat "$build.log" >&2; exit 2; }
# shellcheck disable=SC2046
ninja -C "$build" $(printf 'fuzz_%s ' $targets) >"$build.log" 2>&1 || { cat "$build.log" >&2; exit 2; }

status=0
for target in $targets; do
  case $target in
    pages) seeds=$root/tests/data/text/pages ;;
    encodings) seeds="$root/tests/data/text/corpus $root/tests/fuzz/seeds/encodings" ;;
    *) seeds=$root/tests/fuzz/seeds/$target ;;
  esac
  work=$build/fuzz/$target
  mkdir -p "$work/found"
  echo "fuzz_$target: $seconds s"
  # shellcheck disable=SC2086
  if ! "$build/tests/fuzz/fuzz_$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
    -artifact_prefix="$work/" "$work/found" $seeds >"$work/log" 2>&1; then
    tail -n 30 "$work/log" >&2
    status=1
  fi
  grep -E 'stat::number_of_executed_units' "$work/log" || true
done
exit $status
