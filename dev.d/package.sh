# The installer with the toolkit it was built with, for a disk image: build/package/HalvornInstaller.app.
# What every desktop has stays the system's: C library, X11, OpenGL.
dev_package() {
  need build run package
  configure_and_build release HalvornInstaller
  local bundle="$PWD/build/package/HalvornInstaller.app" plugins
  plugins=$(qmake6 -query QT_INSTALL_PLUGINS)
  rm -rf build/package; mkdir -p build/package
  cp -a build/HalvornInstaller.app build/package/
  local libraries="$bundle/Contents/Frameworks" into="$bundle/Contents/PlugIns"
  mkdir -p "$libraries" "$into/platforms" "$into/imageformats"
  cp "$plugins/platforms/libqxcb.so" "$plugins/platforms/libqwayland-generic.so" "$into/platforms/"
  # Without the first there is no window on Wayland, without the second none has a title where the desktop draws none.
  local part
  for part in wayland-shell-integration/libxdg-shell.so wayland-decoration-client/libbradient.so; do
    mkdir -p "$into/${part%/*}"; cp "$plugins/$part" "$into/$part"
  done
  local format
  for format in libqicns libqsvg libqjpeg; do
    if [ -e "$plugins/imageformats/$format.so" ]; then cp "$plugins/imageformats/$format.so" "$into/imageformats/"; fi
  done
  bundle_libraries "$libraries" "$bundle/Contents/Linux"/* "$into"/*/*.so
  local file
  for file in "$bundle/Contents/Linux"/*; do patchelf --force-rpath --set-rpath '$ORIGIN/../Frameworks' "$file"; done
  for file in "$libraries"/*; do patchelf --force-rpath --set-rpath '$ORIGIN' "$file"; done
  for file in "$into"/*/*.so; do patchelf --force-rpath --set-rpath '$ORIGIN/../../Frameworks' "$file"; done
  printf '[Paths]\nPrefix=..\nPlugins=PlugIns\n' >"$bundle/Contents/Linux/qt.conf"
  say "build/package/HalvornInstaller.app: $(du -sh "$bundle" | cut -f1)"
}

# bundle_libraries FOLDER FILE...: copies what the files link, all the way down.
bundle_libraries() {
  local folder=$1; shift
  ldd "$@" | awk '$2 == "=>" && $3 ~ /^\// {print $1, $3}' | sort -u | while read -r name path; do
    case "$name" in
      libc.so* | libm.so* | libdl.so* | libpthread.so* | librt.so* | libresolv.so* | libX11.so* | libX11-xcb.so* | \
        libxcb.so* | libXau.so* | libXdmcp.so* | libGL*.so* | libEGL*.so* | libOpenGL*.so*) ;;
      *) cp -L "$path" "$folder/$name" ;;
    esac
  done
}
