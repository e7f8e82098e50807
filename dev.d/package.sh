# The installer with the toolkit it was built with, for a disk image, and halvorn, which makes one: build/package.
# What every desktop has stays the system's: packaging/linux/system-libraries.
# With --deb the Debian packages for this release instead, which use its toolkit.
dev_package() {
  need build run package
  if [ "${1:-}" = --deb ]; then package_deb; return; fi
  configure_and_build release HalvornInstaller halvorn HalvornLauncher HalvornStarter
  rm -rf build/package; mkdir -p build/package
  packaging/linux/package_bundle build/HalvornInstaller.app build/package/HalvornInstaller.app "$(source_time)"
  # The maker's tool, which finds the package and what people open beside itself.
  cp build/HalvornLauncher build/HalvornStarter build/package/
  strip --strip-unneeded -o build/package/halvorn build/halvorn
  say "build/package/HalvornInstaller.app: $(du -sh --apparent-size build/package/HalvornInstaller.app | cut -f1)"
}

package_deb() {
  build_for_debs
  mkdir -p build/package
  packaging/linux/make_deb build/HalvornInstaller.app build/package "$(source_time)"
  packaging/linux/make_library_debs build/release build/package "$(source_time)"
  say build/package/*.deb
}

# All that is installed.
build_for_debs() {
  need docs
  configure_and_build release HalvornInstaller halvorn HalvornLauncher HalvornStarter kt Micro HalvornSound HalvornDigests ktstuff_manual \
    ktstuff_{Text,Bundles,Process,Sound,Appearance,KTStuff}_{shared,static}
}

# The time of everything that is made to be handed on: of what it is made from, not of now.
source_time() {
  if [ -n "${SOURCE_DATE_EPOCH:-}" ]; then echo "$SOURCE_DATE_EPOCH"; return; fi
  git log -1 --format=%ct 2>/dev/null || stat -c %Y CHANGELOG.md
}
