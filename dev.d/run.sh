# Installs a sample product through the real window; with --wayland [sway|kwin|gnome] on a Wayland desktop of its own, with --mac through the
# window for macOS, in GNUstep's AppKit.
dev_run() {
  if [ "${1:-}" = --mac ]; then
    need build run test mac
    configure_and_build dev mac_installer installer_resources
    tests/mac/run/tour.sh build/dev/tests/mac_installer build/dev/HalvornInstaller.app/Contents/Resources build/run-mac
    return
  fi
  if [ "${1:-}" = --wayland ]; then
    need build run wayland
    [ "${2:-sway}" = sway ] || need test
    run_without_display "$@"
    return
  fi
  need build run
  if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then run_with_display; else run_without_display; fi
}

# Everything happens below build/run, the home folder too: nothing of the person's own is touched.
run_with_display() {
  configure_and_build release HalvornInstaller sample_image
  local run="$PWD/build/run"
  rm -rf "$run"; mkdir -p "$run/home/Applications" "$run/image/old"
  local authority="${XAUTHORITY:-$HOME/.Xauthority}"
  build/release/tests/sample_image "$run/home/Applications" 1.0
  build/release/tests/sample_image "$run/image" 2.0
  say "Version 1.0 runs. Click through the installer: it will quit it, install 2.0 and launch that."
  export HOME="$run/home" XAUTHORITY="$authority"
  # The installer refuses to run as root, but for containers that have no other account.
  [ "$(id -u)" != 0 ] || export HALVORN_AS_ROOT=container
  "$run/home/Applications/Sample.app/Contents/Linux/Sample" &
  build/HalvornInstaller.app/Contents/Linux/HalvornInstaller -sourcePath "$run/image/Sample.app" \
    -readMePath "$run/image/Read Me.rtf" -documentationPath "$run/image/Guide.html" \
    -destinationPath "$run/home/Applications/Sample.app"
  cat "$run/home/Library/Logs/HalvornInstaller.log"
}

run_without_display() {
  configure_and_build release HalvornInstaller installer_tour
  rm -rf build/run
  build/release/tests/installer_tour "$@" build/run
  say "pictures: build/run/*.png"
}
