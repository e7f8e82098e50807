# What the verbs share. Sourced by ./dev, which has gone to the root of the tree.

say() { printf '%s\n' "$*" >&2; }
die() { say "dev: $*"; exit 1; }

can_be_root() { [ "$(id -u)" = 0 ] || command -v sudo >/dev/null; }
as_root() { if [ "$(id -u)" = 0 ]; then "$@"; else sudo "$@"; fi; }

# need GROUP...: installs what is missing of the package groups in dev.d/packages.
need() {
  [ -r /etc/debian_version ] || { say "not a Debian system: trusting that $* is there"; return 0; }
  local wanted missing=() alternatives package found
  mapfile -t wanted < <(awk -v groups=" $* " '/^#/ || NF < 2 {next} index(groups, " " $1 " ") {
    for (i = 2; i <= NF; i++) print $i}' dev.d/packages)
  for alternatives in "${wanted[@]}"; do
    found=
    for package in ${alternatives//|/ }; do is_installed "$package" && found=yes; done
    [ -n "$found" ] || missing+=("$alternatives")
  done
  [ "${#missing[@]}" = 0 ] && return 0
  local chosen=()
  if ! can_be_root; then
    for alternatives in "${missing[@]}"; do chosen+=("$(first_known "$alternatives")"); done
    die "packages are missing, and there is no sudo; an administrator installs them with: apt-get install ${chosen[*]}"
  fi
  say "installing: ${missing[*]}"
  local log; log=$(mktemp)
  as_root apt-get -o DPkg::Lock::Timeout=900 update >"$log" 2>&1 || { cat "$log" >&2; die "apt-get update failed"; }
  for alternatives in "${missing[@]}"; do chosen+=("$(first_known "$alternatives")"); done
  as_root env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=900 install -y \
    --no-install-recommends "${chosen[@]}" >"$log" 2>&1 || { tail -n 30 "$log" >&2; die "apt-get install failed"; }
  rm -f "$log"
}

is_installed() { [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]; }

# The first of "a|b" that this release of the system has.
first_known() {
  local package
  for package in ${1//|/ }; do
    if apt-cache show "$package" >/dev/null 2>&1; then echo "$package"; return; fi
  done
  echo "${1%%|*}"
}

# configure_and_build PRESET [TARGET...]: quiet unless it fails.
configure_and_build() {
  local preset=$1 log; shift
  log=$(mktemp)
  local options=()
  command -v ccache >/dev/null && options+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
  cmake --preset "$preset" "${options[@]}" >"$log" 2>&1 || { cat "$log" >&2; die "configuring failed"; }
  if [ -t 2 ]; then cmake --build --preset "$preset" ${1:+--target "$@"}; else
    cmake --build --preset "$preset" ${1:+--target "$@"} >"$log" 2>&1 || { tail -n 60 "$log" >&2; die "the build failed"; }
  fi
  rm -f "$log"
}
