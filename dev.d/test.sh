# One test at a time for each processor; the labels are kinds (unit, contract, adapter, flow) and subjects.
dev_test() {
  local preset=dev
  if [ "${1:-}" = --sanitize ]; then preset=asan; shift; fi
  need build run test
  configure_and_build "$preset"
  export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=0}" UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1}"
  local log="build/$preset/last-test.log" status=0
  # Live desktops on a machine that does other things too: a test may be disturbed. It is run again then, and said so.
  ctest --preset "$preset" -j "$(nproc)" --repeat until-pass:3 "$@" >"$log" 2>&1 || status=$?
  if [ "$status" != 0 ]; then grep -vE '^ +Start +[0-9]+:|Passed +[0-9.]+ sec$' "$log" | tail -n 400; fi
  report_disturbed "$log"
  report_skipped "$log"
  grep -E 'tests passed' "$log" || true
  sed -n '/^The following tests FAILED/,$p' "$log"
  return "$status"
}

# What had to be run more than once.
report_disturbed() {
  local disturbed
  disturbed=$(grep -E '\*\*\*(Failed|Timeout|Exception)' "$1" | sed -E 's/^.*Test *#[0-9]+: ([^ ]+).*$/  \1/' | sort | uniq -c || true)
  [ -z "$disturbed" ] || say "did not pass each time (how often it failed):
$disturbed"
}

# What this machine could not run; the reasons are in the log.
report_skipped() {
  local skipped
  skipped=$(grep -E '\*\*\*Skipped' "$1" | sed -E 's/^.*Test *#[0-9]+: ([^ ]+).*$/  \1/' || true)
  [ -z "$skipped" ] || say "skipped, see $1:
$skipped"
}
