// halvorn remove: an installed product into the Trash, with what the desktop knows of it. What the person made with it
// stays, and is named.
#include <algorithm>
#include <filesystem>

#include "Core/Paths.h"
#include "KTStuff/KTClasses/KTProcess.h"
#include "KTStuff/KTClasses/KTProcessClass.h"
#include "KTStuff/KTSystem.h"
#include "Platform/bundles/Bundles.h"
#include "Platform/bundles/linux/launching/BundleRegistration.h"
#include "Platform/bundles/linux/launching/Launcher.h"
#include "Platform/bundles/linux/launching/XdgLoginItems.h"
#include "Platform/files/SearchPaths.h"
#include "Platform/files/Trash.h"
#include "Platform/running/Clock.h"
#include "System/linux/Places.h"
#include "tools/halvorn/Plan.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

bool isFolder(const std::string& path) {
  std::error_code problem;
  return fs::is_directory(path, problem);
}

class Removal {
 public:
  Removal(InstallerSteps& steps, const Text& bundle)
      : steps_(steps),
        bundle_(bundle),
        places_(steps.system().parts().of<Places>()),
        launcher_(places_.ground.environment, places_.folders),
        registration_(steps.bundles(), places_.folders, launcher_, {}) {
    info_ = steps.bundles().infoDictionary(bundle).value_or(PropertyDictionary());
    files_ = registration_.filesOf(bundle);
    for (const std::string& file :
         XdgLoginItems(places_.folders, places_.ground.environment).filesStarting(bundle)) {
      const bool isPersons = file.starts_with(places_.folders.configHome() + "/");
      (isPersons ? files_ : systemsFiles_).push_back(file);
    }
    findWhatStays();
  }

  [[nodiscard]] PropertyDictionary facts() const {
    return {{"bundle", bundle_},
            {"trashes", textsOf(files_)},
            {"stays", textsOf(stays_)},
            {"systems", textsOf(systemsFiles_)}};
  }
  [[nodiscard]] std::string sentences() const {
    std::string lines = "To Trash:    " + shown(bundle_) + "\n";
    for (const std::string& file : files_) lines += "To Trash:    " + shown(Text(file)) + "\n";
    for (const std::string& file : systemsFiles_)
      lines += "Stays:       " + shown(Text(file)) + " (the system's)\n";
    for (const std::string& file : stays_) lines += "Stays:       " + shown(Text(file)) + "\n";
    return lines;
  }

  // The reason is empty when all went well.
  struct End {
    Ending ending = Ending::Done;
    Text reason = {};
  };
  [[nodiscard]] End carryOut() {
    if (!steps_.destinations().canWriteToFileOrDirectory(Paths::deletingLastComponent(bundle_)))
      return {Ending::NotCopiedWithRights, "only the administrator may remove it: sudo halvorn remove"};
    if (const OptionalText name = programThatStays())
      return {Ending::RefusedToQuit, format("%@ did not quit", *name)};
    if (const OptionalText reason = trash(bundle_)) return {Ending::NotTrashed, *reason};
    for (const std::string& file : files_) {
      if (const OptionalText reason = trash(Text(file))) return {Ending::NotTrashed, *reason};
    }
    registration_.refreshDatabase();
    return {};
  }

 private:
  static PropertyArray textsOf(const std::vector<std::string>& paths) {
    PropertyArray texts;
    for (const std::string& path : paths) texts.emplace_back(Text(path));
    return texts;
  }

  // A program that comes back as soon as it is quit stays, too.
  [[nodiscard]] OptionalText programThatStays() {
    constexpr double kPauseBetweenPrograms = 0.1;
    for (const KTProcessPointer& process : programs()) {
      process->quit();
      steps_.system().clock().sleep(kPauseBetweenPrograms);
    }
    const std::vector<KTProcessPointer> left = programs();
    return left.empty() ? std::nullopt : OptionalText(left.front()->name().value_or(Text()));
  }
  [[nodiscard]] std::vector<KTProcessPointer> programs() {
    std::vector<KTProcessPointer> found;
    for (const KTProcessPointer& process : steps_.system().processes().allProcesses()) {
      if (process->path() == bundle_ && process->isStillRunning()) found.push_back(process);
    }
    return found;
  }

  [[nodiscard]] OptionalText trash(const Text& item) {
    const auto failure =
        steps_.trash().recycle(Paths::deletingLastComponent(item), {Paths::lastComponent(item)});
    return failure ? OptionalText(format("%@: %@", failure->reason, failure->path)) : std::nullopt;
  }

  // Settings and data by the names under which programs keep them.
  void findWhatStays() {
    const std::string name = Paths::deletingExtension(Paths::lastComponent(bundle_)).bytes();
    const std::string identifier = textIn(info_, "CFBundleIdentifier").bytes();
    const std::string home = places_.folders.home();
    for (const std::string& folder :
         {places_.folders.configHome(), places_.folders.dataHome(), home + "/.cache", home + "/.local/state",
          home + "/Library/Preferences", home + "/Library/Application Support"}) {
      for (const std::string& each : {name, identifier, identifier + ".plist", name + ".conf"}) {
        std::error_code problem;
        const bool isName = !each.empty() && each != ".plist";
        if (isName && fs::exists(fs::symlink_status(folder + "/" + each, problem)))
          stays_.push_back(folder + "/" + each);
      }
    }
  }

  InstallerSteps& steps_;
  const Text bundle_;
  const Places& places_;
  const Launcher launcher_;
  const BundleRegistration registration_;
  PropertyDictionary info_;
  std::vector<std::string> files_;         // entries and icons of the person's
  std::vector<std::string> systemsFiles_;  // for all people of the computer
  std::vector<std::string> stays_;
};

// Where the product of that name is installed; a word with a slash is a path.
std::vector<Text> bundlesNamed(const Text& word, InstallerSteps& steps) {
  std::vector<Text> found;
  std::error_code problem;
  if (word.contains("/")) {
    const fs::path path = fs::absolute(word.bytes(), problem).lexically_normal();
    found.emplace_back(path.has_filename() ? path.string() : path.parent_path().string());
  } else {
    const Text file = Paths::extension(word) == Text("app") ? word : word + Text(".app");
    const SearchPaths& places = steps.system().searchPaths();
    for (const auto& folders : {places.userApplicationsFolders(), places.localApplicationsFolders()}) {
      for (const Text& folder : folders) found.push_back(Paths::appending(folder, file));
    }
  }
  std::erase_if(found, [](const Text& path) { return !path.hasSuffix(".app") || !isFolder(path.bytes()); });
  return found;
}

}  // namespace

Ending removeProduct(const Call& call) {
  if (call.words.plain.size() != 1) return Ending::Misused;
  InstallerSteps steps({.installer = installerFor(call).value_or(Text())});
  const std::vector<Text> found = bundlesNamed(call.words.plain.front(), steps);
  if (found.size() != 1) {
    call.complain(found.empty() ? "no such product is installed" : "there are several; name one by its path");
    for (const Text& path : found) call.complain("  " + shown(path));
    return Ending::NoInput;
  }
  Removal removal(steps, found.front());
  PropertyDictionary facts = removal.facts();
  Removal::End end{Ending::NotConfirmed, "nobody said yes (--yes): nothing is removed"};
  if (call.isConfirmed(removal.sentences() + "Remove?")) end = removal.carryOut();
  if (call.isJson()) {
    put(facts, "status", static_cast<int>(end.ending));
    put(facts, "reason", end.reason);
    call.sayJson(facts);
  } else if (end.ending != Ending::Done) {
    call.complain(shown(end.reason));
  } else {
    call.say(shown(found.front()) + " is in the Trash.");
  }
  return end.ending;
}

}  // namespace halvorn
