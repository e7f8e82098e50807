#include "tools/halvorn/Plan.h"

#include <filesystem>

#include "Core/ForPeople.h"
#include "Core/Paths.h"
#include "KTStuff/KTClasses/KTInstallerInterface.h"
#include "KTStuff/KTClasses/KTProcess.h"
#include "KTStuff/KTClasses/KTUtilitiesVersions.h"
#include "KTStuff/KTSystem.h"
#include "Platform/bundles/Bundles.h"
#include "Platform/bundles/ItemFacts.h"
#include "Sources/ArgumentDictionary.h"
#include "tools/halvorn/TreeSize.h"
#include "train/InstallFunction.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

const char* nameOf(DestinationReason reason) {
  switch (reason) {
    case DestinationReason::Given:
      return "given";
    case DestinationReason::GivenOneIsUnusable:
      return "givenOneIsUnusable";
    case DestinationReason::LoginItem:
      return "loginItem";
    case DestinationReason::RunningCopy:
      return "runningCopy";
    case DestinationReason::ApplicationsFolder:
      break;
  }
  return "applicationsFolder";
}

// Puts the facts together, one subject after the other. The first thing that stands in the way is the ending.
class Planning {
 public:
  explicit Planning(InstallerSteps& steps) : steps_(steps), arguments_(steps.arguments()) {}

  Plan made() {
    tellProduct();
    if (const OptionalText problem = steps_.setupError()) {
      put(plan_.facts, "problem", *problem);
      endWith(Ending::NothingToInstall);
      return plan_;
    }
    tellSystem();
    tellDestination();
    tellTargets();
    tellRights();
    tellReplacements();
    tellSpace();
    tellLaunch();
    return plan_;
  }

 private:
  [[nodiscard]] OptionalText argument(const char* key) const { return arguments_.text(key); }
  [[nodiscard]] Text source() const { return argument(KTInstallerKeySourcePath).value_or(Text()); }
  [[nodiscard]] Text destination() const { return argument(KTInstallerKeyDestinationPath).value_or(Text()); }
  void endWith(Ending ending) {
    if (plan_.ending == Ending::Done) plan_.ending = ending;
  }
  void tellText(const char* key, const OptionalText& text) {
    if (text) put(plan_.facts, key, *text);
  }

  void tellProduct() {
    const auto info = steps_.bundles().infoDictionary(source()).value_or(PropertyDictionary());
    tellText("product", argument(KTInstallerKeyProductName));
    tellText("source", argument(KTInstallerKeySourcePath));
    const OptionalText given = argument(KTInstallerKeyVersion);
    tellText("version", given ? given : textForKey(info, "CFBundleShortVersionString"));
    tellText("readMe", argument(KTInstallerKeyReadMePath));
    tellText("documentation", argument(KTInstallerKeyDocumentationPath));
  }

  void tellSystem() {
    const auto& alert = steps_.systemAlert();
    put(plan_.facts, "system", steps_.system().versions().systemVersionString());
    put(plan_.facts, "compatible", !alert.has_value());
    if (!alert) return;
    put(plan_.facts, "problem", alert->messageText);
    endWith(Ending::SystemTooOld);
  }

  void tellDestination() {
    PropertyDictionary place = {{"path", destination()},
                                {"shown", steps_.destinations().localizedPath(destination())},
                                {"reason", nameOf(*steps_.destinationReason())}};
    put(plan_.facts, "destination", place);
    tellText("wrapper", argument(KTInstallerKeyWrapperPath));
  }

  void tellTargets() {
    PropertyArray quits;
    for (const KTProcessPointer& process : steps_.targets()) {
      PropertyDictionary target = {{"pid", std::int64_t{process->unixPID()}},
                                   {"name", process->name().value_or(Text())},
                                   {"signature", process->signatureString()}};
      if (const OptionalText path = process->path()) put(target, "path", *path);
      quits.emplace_back(target);
    }
    put(plan_.facts, "quits", quits);
  }

  void tellRights() {
    const bool needsRights = !steps_.destinations().canWriteToPath(destination());
    PropertyDictionary rights = {{"needed", needsRights}};
    const OptionalText obstacle = needsRights ? steps_.obstacleToRights() : std::nullopt;
    if (obstacle) {
      put(rights, "obstacle", *obstacle);
      endWith(Ending::NotCopiedWithRights);
    }
    put(plan_.facts, "rights", rights);
  }

  void tellReplacements() {
    const FileManager& files = steps_.system().files();
    const auto replaced = replacementsOf(files, destination(), argument(KTInstallerKeyWrapperPath));
    if (replaced.trashed) put(plan_.facts, "trashes", *replaced.trashed);
    put(plan_.facts, "removes", PropertyArray(replaced.removed.begin(), replaced.removed.end()));
    const auto obstacle = obstacleToInstalling(files, source(), destination());
    if (!obstacle) return;
    put(plan_.facts, "obstacle", PropertyDictionary{{"reason", obstacle->reason}, {"path", obstacle->path}});
    endWith(Ending::NotCopied);
  }

  // The old copy keeps its room in the Trash.
  void tellSpace() {
    const OptionalText wrapper = argument(KTInstallerKeyWrapperPath);
    const std::uint64_t needed = sizeOfTree((wrapper ? *wrapper : source()).bytes());
    fs::path folder = Paths::deletingLastComponent(destination()).bytes();
    std::error_code problem;
    while (folder.has_relative_path() && !fs::exists(folder, problem)) folder = folder.parent_path();
    const fs::space_info space = fs::space(folder, problem);
    PropertyDictionary told = {{"needed", static_cast<std::int64_t>(needed)}};
    if (!problem) {
      put(told, "free", static_cast<std::int64_t>(space.available));
      put(told, "enough", space.available >= needed);
      if (space.available < needed) endWith(Ending::NotCopied);
    }
    put(plan_.facts, "space", told);
  }

  void tellLaunch() {
    PropertyDictionary launch = {{"starts", false}};
    if (const OptionalText program = steps_.bundles().executablePath(source())) {
      const std::size_t inside = source().length();
      put(launch, "program", Text(destination() + program->substring(inside)));
      const auto flags = steps_.system().items().flags(source());
      put(launch, "starts", flags && flags->isNativeApplication);
    }
    put(plan_.facts, "launches", launch);
  }

  InstallerSteps& steps_;
  const ArgumentDictionary& arguments_;
  Plan plan_;
};

const PropertyDictionary& part(const Plan& plan, const char* key) {
  static const PropertyDictionary none;
  const auto found = plan.facts.find(key);
  const PropertyDictionary* const value = found != plan.facts.end() ? found->second.dictionary() : nullptr;
  return value != nullptr ? *value : none;
}

bool isTrueIn(const PropertyDictionary& facts, const char* key) {
  const auto found = facts.find(key);
  return found != facts.end() && found->second.isTrue();
}

std::string reasonSentence(const Plan& plan) {
  const std::string reason = textIn(part(plan, "destination"), "reason").bytes();
  if (reason == "given") return "the arguments name it";
  if (reason == "givenOneIsUnusable") return "the folder of the one that the arguments name does not exist";
  if (reason == "loginItem") return "it starts from there when you log in";
  if (reason == "runningCopy") return "it runs from there now";
  return "nothing names another usable place, and no copy that is kept was found";
}

std::string megabytes(const PropertyDictionary& facts, const char* key) {
  const auto found = facts.find(key);
  const std::int64_t bytes = found != facts.end() && found->second.integer() ? *found->second.integer() : 0;
  return format("%1.1f MB", static_cast<double>(bytes) / 1e6).bytes();
}

std::string quitSentences(const Plan& plan) {
  std::string lines;
  const auto quits = plan.facts.find("quits");
  if (quits == plan.facts.end()) return lines;
  for (const PropertyValue& value : *quits->second.array()) {
    const PropertyDictionary& target = *value.dictionary();
    lines += "Quits:       " + shown(textIn(target, "name")) + " (" + shown(textIn(target, "signature")) +
             ", process " + std::to_string(*target.at("pid").integer()) + ")\n";
  }
  return lines;
}

}  // namespace

Text textIn(const PropertyDictionary& facts, const char* key) {
  return textForKey(facts, key).value_or(Text());
}

Plan planOf(InstallerSteps& steps) { return Planning(steps).made(); }

std::string sentencesOf(const Plan& plan) {
  const auto fact = [&](const char* key) { return shown(textIn(plan.facts, key)); };
  std::string lines =
      "Product:     " + fact("product") + " " + fact("version") + "\nFrom:        " + fact("source") + "\n";
  if (plan.facts.contains("problem")) lines += "Problem:     " + fact("problem") + "\n";
  if (!plan.facts.contains("destination")) return lines;
  const PropertyDictionary& place = part(plan, "destination");
  lines += "To:          " + shown(textIn(place, "path")) + "\n             because " + reasonSentence(plan) +
           "\n" + quitSentences(plan);
  if (plan.facts.contains("trashes")) lines += "To Trash:    " + fact("trashes") + "\n";
  for (const PropertyValue& item : *plan.facts.at("removes").array())
    lines += "Removes:     " + shown(*item.text()) + " (for good)\n";
  const PropertyDictionary& rights = part(plan, "rights");
  lines += std::string("Rights:      ") +
           (isTrueIn(rights, "needed") ? "an administrator's, which will be asked for" : "yours") + "\n";
  if (rights.contains("obstacle")) lines += "Problem:     " + shown(textIn(rights, "obstacle")) + "\n";
  const PropertyDictionary& space = part(plan, "space");
  lines += "Space:       " + megabytes(space, "needed") + " of " + megabytes(space, "free") +
           (isTrueIn(space, "enough") ? "\n" : ": not enough\n");
  const PropertyDictionary& obstacle = part(plan, "obstacle");
  if (!obstacle.empty())
    lines +=
        "Problem:     " + shown(textIn(obstacle, "reason")) + ": " + shown(textIn(obstacle, "path")) + "\n";
  const PropertyDictionary& launch = part(plan, "launches");
  lines += isTrueIn(launch, "starts") ? "Launches:    " + shown(textIn(launch, "program")) + "\n"
                                      : "Problem:     it holds no program that starts here\n";
  return lines;
}

}  // namespace halvorn
