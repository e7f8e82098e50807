# Benchmarks measure ours against what people would use instead, side by side in one run, as ratios.
# benchmarks/run_NAME is told the folder of its programs, and that of the installer where it measures that.
dev_bench() {
  local name="${1:-}" each
  if [ -z "$name" ]; then
    say "benchmarks:"
    for each in benchmarks/run_*; do say "  ${each#benchmarks/run_}"; done
    return 0
  fi
  shift
  if [ "$name" = all ]; then bench_prepare; benchmarks/book.py all "$PWD" "$@"; return; fi
  [ -x "benchmarks/run_$name" ] || die "no benchmark '$name'"
  if [ "$name" = size ]; then
    source dev.d/package.sh
    dev_package
    benchmarks/run_size build/package/HalvornInstaller.app "$@"
    return
  fi
  if [ "$name" = build ]; then
    need build run test wayland mac docs
    mkdir -p build
    benchmarks/run_build "$PWD" "$@"
    return
  fi
  bench_programs
  local programs="$PWD/build/release/benchmarks/$name"
  case "$name" in startup | process) set -- "$PWD/build/HalvornInstaller.app" "$@" ;; esac
  "benchmarks/run_$name" "$programs" "$@"
}

bench_programs() {
  need build run bench
  cmake --preset release -DKT_BENCHMARKS=ON >/dev/null || die "configuring failed"
  configure_and_build release
}

# What the whole book is measured with. The package is made first: it configures the same build in its own way.
bench_prepare() {
  need wayland
  source dev.d/package.sh
  dev_package
  bench_programs
}
