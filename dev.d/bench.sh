# Benchmarks measure ours against what people would use instead, side by side in one run, as ratios.
dev_bench() {
  need build bench
  local name="${1:-}"
  if [ -z "$name" ]; then
    say "benchmarks:"; for each in benchmarks/run_*; do say "  $(basename "$each" | sed 's/^run_//')"; done
    return 0
  fi
  shift
  [ -x "benchmarks/run_$name" ] || die "no benchmark '$name'"
  need run
  configure_and_build release
  "benchmarks/run_$name" "$PWD/build/release" "$@"
}
