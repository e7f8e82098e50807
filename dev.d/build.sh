dev_build() {
  need build
  configure_and_build "${1:-release}" HalvornInstaller
  [ "${1:-release}" = release ] && say "build/HalvornInstaller.app"
  return 0
}
