dev_build() {
  need build
  configure_and_build "${1:-release}" HalvornInstaller halvorn HalvornLauncher HalvornStarter
  [ "${1:-release}" = release ] && say "build/HalvornInstaller.app, and build/halvorn for who makes a medium of it"
  return 0
}
