# One test at a time for each processor; the labels are kinds (unit, contract, adapter, flow) and subjects.
dev_test() {
  local preset=dev
  if [ "${1:-}" = --sanitize ]; then preset=asan; shift; fi
  need build run test mac
  configure_and_build "$preset"
  export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=0}" UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1}"
  local log="build/$preset/last-test.log" status=0
  ctest --preset "$preset" -j "$(nproc)" "$@" >"$log" 2>&1 || status=$?
  if [ "$status" != 0 ]; then grep -vE '^ +Start +[0-9]+:|Passed +[0-9.]+ sec$' "$log" | tail -n 400; fi
  report_skipped "$log"
  grep -E 'tests passed' "$log" || true
  sed -n '/^The following tests FAILED/,$p' "$log"
  return "$status"
}

# What this machine could not run; the reasons are in the log.
report_skipped() {
  local skipped
  skipped=$(grep -E '\*\*\*Skipped' "$1" | sed -E 's/^.*Test *#[0-9]+: ([^ ]+).*$/  \1/' || true)
  [ -z "$skipped" ] || say "skipped, see $1:
$skipped"
}
