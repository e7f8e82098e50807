#include "Platform/bundles/linux/BundleFolder.h"
#include "Platform/running/linux/ThisProgram.h"
#include "tools/halvorn/Plan.h"

#include <filesystem>

#include "Core/Log.h"
#include "Core/Paths.h"

namespace halvorn {
namespace {

bool isInstaller(const Text& bundle) {
  return std::filesystem::exists(bundle.bytes() + "/Contents/Resources/InstallerWindow.xml");
}

}  // namespace

std::string shown(const Text& text) { return Log::escapedForLog(text).bytes(); }

OptionalText installerFor(const Call& call) {
  std::error_code problem;
  if (const OptionalText given = call.words.value("--installer")) {
    const Text absolute(std::filesystem::absolute(given->bytes(), problem).string());
    return isInstaller(absolute) ? OptionalText(absolute) : std::nullopt;
  }
  const Text program = pathOfThisProgram();
  const Text folder = Paths::deletingLastComponent(program);
  std::vector<Text> places = {
      Paths::appending(folder, "HalvornInstaller.app"),
      Paths::appending(Paths::deletingLastComponent(folder), "lib/halvorn-installer/HalvornInstaller.app")};
  if (const OptionalText around = bundleAround(program)) places.insert(places.begin(), *around);
  for (const Text& place : places) {
    if (isInstaller(place)) return place;
  }
  return std::nullopt;
}

Ending plan(const Call& call) {
  const OptionalText installer = installerFor(call);
  if (!installer) {
    call.complain("no installer's bundle was found; name it with --installer");
    return Ending::NoInput;
  }
  std::vector<Text> lines;
  InstallerSteps steps({.installer = *installer,
                        .arguments = call.words.plain,
                        .told = [&lines](const Text& line) { lines.push_back(line); }});
  steps.begin();
  Plan made = planOf(steps);
  if (!call.isJson()) {
    std::fputs(sentencesOf(made).c_str(), call.output);
    return made.ending;
  }
  put(made.facts, "log", PropertyArray(lines.begin(), lines.end()));
  put(made.facts, "status", static_cast<int>(made.ending));
  call.sayJson(made.facts);
  return made.ending;
}

}  // namespace halvorn
