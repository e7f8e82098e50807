#include "tools/halvorn/Launchers.h"

#include <algorithm>

#include "Platform/bundles/linux/launching/DesktopEntry.h"

namespace halvorn {
namespace {

// Says a sentence on standard error, and where the person is: by a notification of the desktop's, if one can
// be had.
std::string tellFunction(const std::string& title) {
  const std::string quoted = quotedForShell(title);
  return "tell() {\n"
         "  echo \"$1\" >&2\n"
         "  notify-send -- " +
         quoted +
         " \"$1\" 2>/dev/null ||\n"
         "  busctl --user -- call org.freedesktop.Notifications /org/freedesktop/Notifications \\\n"
         "    org.freedesktop.Notifications Notify 'susssasa{sv}i' " +
         quoted + " 0 dialog-error " + quoted +
         " \"$1\" 0 0 -1 >/dev/null 2>&1\n"
         "}\n";
}

// A library that is missing ends the program before its first line, with a word for terminals alone. So the
// loader is asked first, for the window system that there is; the list in the bundle tells which package has
// the library.
constexpr char kLibraryCheck[] = R"script(lacking() {
  LD_LIBRARY_PATH="$bundle/Contents/PlugIns/platforms${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}" \
    LD_PRELOAD=$1 LD_TRACE_LOADED_OBJECTS=1 "$program" 2>/dev/null |
    sed -n 's/^[[:space:]]*\([^ ]*\) => not found.*/\1/p' | sort -u
}
missing=
for part in ${WAYLAND_DISPLAY:+libqwayland-generic.so} ${DISPLAY:+libqxcb.so}; do
  missing=$(lacking $part | tr '\n' ' ')
  [ -n "$missing" ] || break
done
if [ -n "$missing" ]; then
  packages=
  for library in $missing; do
    found=$(sed -n "s/^$library  *\([^ ]*\) .*/ \1/p" "$bundle/Contents/Resources/system-libraries" 2>/dev/null)
    packages=$packages$found
  done
  tell "The installer cannot start: this system has no ${missing% }.${packages:+ An administrator adds it with: apt install$packages}"
  exit 69
fi
)script";

std::string withoutSlashes(std::string name) {
  std::replace(name.begin(), name.end(), '/', '-');
  return name;
}

}  // namespace

std::string quotedForShell(const std::string& word) {
  std::string quoted = "'";
  for (const char character : word)
    quoted += character == '\'' ? std::string("'\\''") : std::string(1, character);
  return quoted + "'";
}

std::string launcherName(const LauncherFacts& facts) { return "Install " + withoutSlashes(facts.product); }

std::string markPath(const LauncherFacts& facts) {
  return std::string(kMediumFolder) + "/" + withoutSlashes(facts.identifier) + ".medium";
}

std::string productPath(const LauncherFacts& facts) {
  return std::string(kMediumFolder) + "/" + withoutSlashes(facts.product) + ".app";
}

std::string installerPath(const LauncherFacts& facts) {
  const std::string bundle = "/HalvornInstaller.app";
  return facts.isInside ? productPath(facts) + "/Contents/Resources" + bundle : kMediumFolder + bundle;
}

std::string launcherScript(const LauncherFacts& facts) {
  const auto here = [](const std::string& path) { return "\"$here\"/" + quotedForShell(path); };
  std::string arguments = " -sourcePath " + here(productPath(facts));
  if (!facts.readMe.empty()) arguments += " -readMePath " + here(facts.readMe);
  if (!facts.documentation.empty()) arguments += " -documentationPath " + here(facts.documentation);
  return "#!/bin/sh\n# Starts the installer that lies beside this file.\n" +
         tellFunction(launcherName(facts)) +
         "here=$(CDPATH='' cd -- \"$(dirname -- \"$0\")\" && pwd -P) || exit 66\nbundle=" +
         here(installerPath(facts)) +
         "\nprogram=$bundle/Contents/Linux/HalvornInstaller\n"
         "[ -f \"$program\" ] || { tell \"The installer is missing: $program\"; exit 66; }\n"
         "[ -x \"$program\" ] || {\n"
         "  tell \"Nothing can be started from here: copy the folder to your disk, or mount the medium "
         "without noexec.\"\n"
         "  exit 69\n"
         "}\n" +
         kLibraryCheck +
         // Of the installer, not of the product.
         "[ $# = 1 ] && case $1 in --help | --version) exec \"$program\" \"$1\" ;; esac\n"
         "exec \"$program\"" +
         arguments + " \"$@\"\n";
}

// Some desktops say where the entry lies, with or without "file://", others do not: then the medium is looked for where
// media are mounted.
std::string launcherEntry(const LauncherFacts& facts) {
  const std::string name = launcherName(facts);
  const std::string script =
      "f=${1#file://}; for d in \"${f%/*}\" \"$PWD\" /run/media/*/* /media/*/* /media/* /mnt/* /mnt "
      "/Volumes/*; do "
      "[ -f \"$d\"/" +
      quotedForShell(markPath(facts)) + " ] && exec sh \"$d\"/" + quotedForShell(name) +
      "; done; notify-send -- " + quotedForShell(name) + " " +
      quotedForShell("The medium is not mounted where it can be found: open the file beside this one.");
  return "[Desktop Entry]\nType=Application\nName=" + escapedValue(name) +
         "\nIcon=system-software-install\nTerminal=false\nExec=" +
         escapedValue("sh -c " + quotedForExec(script) + " sh %k") + "\n";
}

}  // namespace halvorn
