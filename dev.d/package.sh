# The installer with the toolkit it was built with, for a disk image: build/package/HalvornInstaller.app.
# What every desktop has stays the system's: packaging/linux/system-libraries.
dev_package() {
  need build run package
  configure_and_build release HalvornInstaller HalvornStarter
  rm -rf build/package; mkdir -p build/package
  packaging/linux/package_bundle build/HalvornInstaller.app build/package/HalvornInstaller.app "$(source_time)"
  cp build/release/packaging/HalvornStarter build/package/
  say "build/package/HalvornInstaller.app: $(du -sh --apparent-size build/package/HalvornInstaller.app | cut -f1)"
}

# The time of everything that is made to be handed on: of what it is made from, not of now.
source_time() {
  if [ -n "${SOURCE_DATE_EPOCH:-}" ]; then echo "$SOURCE_DATE_EPOCH"; return; fi
  git log -1 --format=%ct 2>/dev/null || stat -c %Y CHANGELOG.md
}
