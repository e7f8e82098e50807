# One test at a time for each processor; the labels are kinds (unit, contract, adapter, flow) and subjects.
dev_test() {
  local preset=dev
  if [ "${1:-}" = --sanitize ]; then preset=asan; shift; fi
  need build run test wayland mac docs
  [ "$preset" != dev ] || ! wants_package "$@" || { source dev.d/package.sh; dev_package; build_for_debs; }
  configure_and_build "$preset"
  # The runtime of GCC 12 takes what some libraries loaded late keep for each thread for what it is not, and crashes on it.
  export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=0:intercept_tls_get_addr=0}"
  export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1}"
  local log="build/$preset/last-test.log" status=0
  ctest --preset "$preset" -j "$(nproc)" "$@" >"$log" 2>&1 || status=$?
  if [ "$status" != 0 ]; then grep -vE '^ +Start +[0-9]+:|Passed +[0-9.]+ sec$' "$log" | tail -n 400; fi
  report_skipped "$log"
  grep -E 'tests passed' "$log" || true
  sed -n '/^The following tests FAILED/,$p' "$log"
  return "$status"
}

# What is handed out is tested as it is handed out, from the release build: with no options, and where it is asked for.
wants_package() { [ "$#" = 0 ] || [[ " $* " == *" package "* || " $* " == *Package* ]]; }

# What this machine could not run, in one line: how many of each reason, and the reasons say what they would take.
report_skipped() {
  local skipped total reasons
  skipped=$(grep -cE '\*\*\*Skipped' "$1" || true)
  [ "$skipped" != 0 ] || return 0
  total=$(sed -nE 's/^.*tests passed.* out of ([0-9]+)$/\1/p' "$1")
  reasons=$(awk '/: Skipped$/ { getline; gsub(/[^ ]*halvorn-test-[^ :]*/, "a folder"); count[$0]++ } END { for (reason in count) print count[reason] " x " reason }' \
    "$(dirname "$1")/Testing/Temporary/LastTest.log" | sort -rn | awk '{ printf "%s%s", separator, $0; separator = "; " }')
  say "skipped $skipped of $total tests: $reasons (their names: grep Skipped $1)"
}
