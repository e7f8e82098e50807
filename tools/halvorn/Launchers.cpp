#include "tools/halvorn/Launchers.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "Platform/bundles/linux/launching/DesktopEntry.h"

namespace halvorn {
namespace {

// A notification of the desktop's, with what is there to ask for one.
std::string notification(const std::string& title, const std::string& sentence) {
  return "notify-send -- " + title + " " + sentence +
         " || busctl --user -- call org.freedesktop.Notifications /org/freedesktop/Notifications "
         "org.freedesktop.Notifications Notify 'susssasa{sv}i' " +
         title + " 0 dialog-error " + title + " " + sentence + " 0 0 -1";
}

std::string withoutSlashes(std::string name) {
  std::replace(name.begin(), name.end(), '/', '-');
  return name;
}

// What is the same to every shell and every reader of a desktop entry.
std::string plain(std::string name) {
  const auto isPlain = [](unsigned char character) {
    return character >= 0x80 || std::isalnum(character) != 0 ||
           std::string_view(" -_.,+@").find(static_cast<char>(character)) != std::string_view::npos;
  };
  std::replace_if(
      name.begin(), name.end(), [&](char character) { return !isPlain(character); }, '_');
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

std::string entryName(const LauncherFacts& facts) { return plain(launcherName(facts)) + ".desktop"; }

std::string markPath(const LauncherFacts& facts) {
  return std::string(kMediumFolder) + "/" + plain(facts.identifier) + ".medium";
}

std::string productPath(const LauncherFacts& facts) {
  return std::string(kMediumFolder) + "/" + withoutSlashes(facts.product) + ".app";
}

std::string installerPath(const LauncherFacts& facts) {
  const std::string bundle = "/HalvornInstaller.app";
  return facts.isInside ? productPath(facts) + "/Contents/Resources" + bundle : kMediumFolder + bundle;
}

LauncherWords launcherWords(const LauncherFacts& facts) {
  LauncherWords words{.title = launcherName(facts),
                      .installer = installerPath(facts),
                      .options = {"-sourcePath", productPath(facts)}};
  if (!facts.readMe.empty()) words.options.insert(words.options.end(), {"-readMePath", facts.readMe});
  if (!facts.documentation.empty())
    words.options.insert(words.options.end(), {"-documentationPath", facts.documentation});
  return words;
}

// find is told where to look by words alone. Some desktops say where the entry lies, some work in its folder, and the others
// leave it to be found where media are mounted; once, however often it is there. What a desktop says in another form (a URL) is
// a place that does not exist. /dev/null is always there: it comes last. Some desktops show the command to the person first.
std::string launcherEntry(const LauncherFacts& facts) {
  const std::string entry = entryName(facts);
  const std::string mark = quotedForExec(markPath(facts));
  const std::string end = " \";\" ";
  const std::string command =
      "find %k " + quotedForExec("./" + entry) +
      " /run/media /media /mnt /Volumes /dev/null -maxdepth 3 -name " + quotedForExec(entry) +
      " -execdir test -f " + mark + end + "\"(\" -execdir sh " + mark + end +
      "-or -quit \")\" -quit -or -path /dev/null -exec notify-send -- " +
      quotedForExec(plain(launcherName(facts))) +
      " \"The medium is not mounted where it can be found: open the file beside this one.\" \";\"";
  return "[Desktop Entry]\nType=Application\nName=" + escapedValue(launcherName(facts)) +
         "\nIcon=system-software-install\nTerminal=false\nExec=" + command + "\n";
}

// The processor that a program is made for stands in bytes 18 and 19; the shell's own is that of the system.
std::string entryScript(const LauncherFacts& facts) {
  const std::string title = quotedForShell(launcherName(facts));
  return "#!/bin/sh\n# Starts what lies at the top of the medium.\ntell() {\n  echo \"$1\" >&2\n  { " +
         notification(title, "\"$1\"") +
         "; } >/dev/null 2>&1\n}\n"
         "processor() { od -A n -t x1 -j 18 -N 2 \"$1\"; }\n"
         "here=$(CDPATH='' cd -- \"$(dirname -- \"$0\")/..\" && pwd -P) || exit 66\n"
         "program=\"$here\"/" +
         title +
         "\n[ -f \"$program\" ] || { tell \"The installer is missing: $program\"; exit 66; }\n"
         "[ -x \"$program\" ] || {\n"
         "  tell \"Nothing can be started from here: copy the folder to your disk, or mount the medium "
         "without noexec.\"\n"
         "  exit 69\n"
         "}\n"
         "[ \"$(processor \"$program\")\" = \"$(processor /bin/sh)\" ] || {\n"
         "  tell \"The installer is made for another kind of processor than this computer's ($(uname "
         "-m)).\"\n"
         "  exit 69\n"
         "}\n"
         "exec \"$program\" \"$@\"\n";
}

}  // namespace halvorn
