# Format, lint, walls, every header alone.
dev_check() {
  need build check test
  if [ "${1:-}" = --fuzz ]; then check_fuzz; return; fi
  check_format
  configure_and_build dev
  check_tidy "$@"
  ctest --preset dev -R '^Walls\.' --output-on-failure
}

sources() { git ls-files '*.cpp' '*.h'; }

check_format() {
  local wrong
  wrong=$(sources | xargs -P "$(nproc)" -n 40 clang-format --dry-run 2>&1 | grep -oE '^[^:]+\.(cpp|h)' | sort -u || true)
  [ -z "$wrong" ] || die "not as clang-format has it: $wrong"
}

# The core with every check of .clang-tidy; pass files to look at others.
check_tidy() {
  local files=("$@")
  [ "${#files[@]}" -gt 0 ] || mapfile -t files < <(git ls-files 'Core/*.cpp' 'Sources/*.cpp' 'train/*.cpp')
  printf '%s\n' "${files[@]}" | xargs -P "$(nproc)" -n 4 clang-tidy --quiet -p build/dev
}

check_fuzz() {
  need fuzz
  tests/fuzz/run.sh
}
