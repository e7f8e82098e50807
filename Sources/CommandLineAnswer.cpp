#include "Sources/CommandLineAnswer.h"

#include <string>

#include "KTStuff/KTClasses/KTInstallerInterface.h"
#include "Platform/bundles/Bundles.h"

namespace halvorn {
namespace {

struct Row {
  const char* key;
  const char* value;
  const char* meaning;
};

std::string rowText(const Row& row) {
  constexpr std::size_t width = 32;
  std::string line = std::string("  -") + row.key + " " + row.value;
  line.append(line.size() < width ? width - line.size() : 1, ' ');
  return line + row.meaning + "\n";
}

Text help() {
  const Row rows[] = {
      {KTInstallerKeySourcePath, "PATH", "the bundle to install; without it, the one around the installer"},
      {KTInstallerKeyDestinationPath, "PATH", "where to, bundle name included"},
      {KTInstallerKeyProductName, "NAME", "shown in the window"},
      {KTInstallerKeyVersion, "VERSION", "shown after the name"},
      {KTInstallerKeyMinSystemVersion, "VERSION", "lowest system version the product runs on"},
      {KTInstallerKeyReadMePath, "FILE", "rich text, plain text, HTML or Markdown shown first"},
      {KTInstallerKeyDocumentationPath, "FILE", "what the \"?\" button opens"},
      {KTInstallerKeyIconPath, "FILE", "image for the window"},
      {KTInstallerKeyWrapperPath, "FOLDER", "folder around the bundle whose other items come along"},
      {KTInstallerKeyProductCode, "CODE...", "four-character signatures of the product"},
      {KTInstallerKeyQuitCode, "CODE...", "signatures of programs that must not run meanwhile"},
      {KTInstallerCompletionSound, "YES", "play a sound at the end"},
      {KTInstallerCompletionQuit, "SECONDS", "quit by itself after so many seconds"},
  };
  std::string text =
      "usage: HalvornInstaller [-KEY VALUE]...\n"
      "Installs an application bundle through a window.\n\n";
  for (const Row& row : rows) text += rowText(row);
  text += "\nAlone: --help, --version\n";
  return text;
}

}  // namespace

OptionalText commandLineAnswer(const std::vector<Text>& argumentList, const Bundles& bundles) {
  if (argumentList.size() != 2) return std::nullopt;
  if (argumentList[1] == Text("--help")) return help();
  if (argumentList[1] != Text("--version")) return std::nullopt;
  const auto information = bundles.infoDictionary(bundles.mainBundlePath());
  const auto version = information ? textForKey(*information, "CFBundleShortVersionString") : std::nullopt;
  return version ? Text("HalvornInstaller ") + *version + Text("\n") : Text("HalvornInstaller\n");
}

}  // namespace halvorn
