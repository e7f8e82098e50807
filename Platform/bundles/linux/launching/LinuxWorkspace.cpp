#include "Platform/bundles/linux/launching/LinuxWorkspace.h"

#include <climits>
#include <filesystem>
#include <utility>

#include "Core/Paths.h"
#include "Platform/bundles/Bundles.h"
#include "Platform/bundles/linux/DisplayNames.h"
#include "Platform/bundles/linux/launching/Launcher.h"
#include "Platform/files/linux/FoundItem.h"

namespace halvorn {
namespace {

// From the working folder where the path is relative, for programs that start in another one.
std::string absolutePath(const Text& path) {
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(path.bytes(), error);
  return error ? std::string() : absolute.string();
}

// An ELF file or a script that names its interpreter.
bool isForLinux(const std::string& program) {
  const auto item = findItem(program);
  const auto start = item ? readStart(*item, 4) : std::nullopt;
  return start && (start->starts_with("\x7F"
                                      "ELF") ||
                   start->starts_with("#!"));
}

}  // namespace

bool isApplicationBundle(const Text& path) {
  if (Paths::extension(path) != Text("app")) return false;
  const auto item = findItem(path.bytes());
  return item && isFolder(*item);
}

LinuxWorkspace::LinuxWorkspace(const Bundles& bundles, const XdgFolders& folders,
                               const Environment& environment, const Launcher& launcher,
                               std::vector<Text> languages, IconDrawing drawing)
    : bundles_(bundles),
      launcher_(launcher),
      languages_(std::move(languages)),
      registration_(bundles, folders, launcher, std::move(drawing)),
      loginItems_(folders, environment) {}

bool LinuxWorkspace::openFile(const Text& path) {
  if (!findItem(path.bytes())) return false;
  return isApplicationBundle(path) ? launchBundle(path) : openWithDesktop(absolutePath(path));
}

bool LinuxWorkspace::launchBundle(const Text& path) const {
  const OptionalText program = bundles_.executablePath(Text(absolutePath(path)));
  if (!program || !isForLinux(program->bytes())) return false;
  return launcher_.launch(program->bytes(), {}) == 0;
}

bool LinuxWorkspace::openUrl(const Text& url) {
  const bool isWebPage = url.hasPrefix("https://") || url.hasPrefix("http://");
  return isWebPage && url.find(u'\0') == Text::npos && openWithDesktop(url.bytes());
}

bool LinuxWorkspace::openWithDesktop(const std::string& argument) const {
  const std::string opener = launcher_.find("xdg-open");
  return !opener.empty() && !argument.empty() && launcher_.launch(opener, {argument}) == 0;
}

int LinuxWorkspace::registerBundle(const Text& urlText) {
  return registration_.registerBundle(pathFromUrlText(urlText));
}

bool LinuxWorkspace::hasIcon(const Text& path) { return findItem(path.bytes()).has_value(); }

Text LinuxWorkspace::displayName(const Text& path) const { return displayNameOf(path, bundles_, languages_); }

}  // namespace halvorn
