#include "tools/halvorn/Check.h"

#include <unistd.h>

#include <filesystem>
#include <set>

#include "Core/FourCharCode.h"
#include "Core/Paths.h"
#include "KTStuff/KTClasses/KTInstallerInterface.h"
#include "KTStuff/KTClasses/KTUtilitiesVersions.h"
#include "KTStuff/KTSystem.h"
#include "Platform/bundles/Bundles.h"
#include "Platform/bundles/ItemFacts.h"
#include "Platform/bundles/linux/BundleIcon.h"
#include "Platform/bundles/linux/launching/BundleRegistration.h"
#include "Platform/bundles/linux/launching/IconPictures.h"
#include "Platform/files/FileManager.h"
#include "Sources/ArgumentDictionary.h"
#include "tools/halvorn/Command.h"

namespace halvorn {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLargestIcon = 16UL * 1024 * 1024;
// Those that desktops ask for.
constexpr int kWantedIconSizes[] = {48, 128, 256};

// Reads one subject after the other and notes what will not do.
class Checking {
 public:
  Checking(InstallerSteps& steps, const Text& bundle) : steps_(steps), bundle_(bundle) {}

  PropertyDictionary made() {
    put(facts_, "bundle", bundle_);
    if (Paths::extension(bundle_) != Text("app"))
      note("error", "", "its name does not end in .app", "rename the folder to Name.app");
    const auto info = steps_.bundles().infoDictionary(bundle_);
    if (!info) {
      note("error", "Info.plist", "it is missing or cannot be read",
           "write Contents/Info.plist, an XML or binary property list");
    } else {
      info_ = *info;
    }
    checkName();
    checkVersions();
    checkSignature();
    checkIcon();
    checkProgram();
    checkLinks();
    tellTexts();
    put(facts_, "findings", findings_);
    put(facts_, "ok", !hasErrors_);
    return facts_;
  }

 private:
  void note(const char* level, const Text& key, const Text& problem, const Text& mend) {
    findings_.emplace_back(
        PropertyDictionary{{"level", level}, {"key", key}, {"problem", problem}, {"mend", mend}});
    hasErrors_ = hasErrors_ || std::string(level) == "error";
  }
  [[nodiscard]] OptionalText value(const char* key) const { return textForKey(info_, key); }
  void tell(const char* name, const OptionalText& text) {
    if (text) put(facts_, name, *text);
  }

  void checkName() {
    tell("name", steps_.arguments().text(KTInstallerKeyProductName));
    PropertyDictionary names;
    for (const auto& [locale, name] : entryNamesOf(bundle_, info_)) {
      if (name.empty()) {
        note("error", "CFBundleDisplayName", "no desktop entry can show the name",
             "take a name of printable characters");
      } else {
        put(names, Text(locale), Text(name));
      }
    }
    put(facts_, "names", names);
    tell("identifier", value("CFBundleIdentifier"));
    if (!value("CFBundleIdentifier"))
      note("warning", "CFBundleIdentifier", "it is missing, so the file name stands for it",
           "give one that stays the same in all versions: org.example.Foo");
  }

  void checkVersions() {
    tell("version", value("CFBundleShortVersionString"));
    if (!value("CFBundleShortVersionString"))
      note("warning", "CFBundleShortVersionString", "the window will show no version", "add it: 1.2");
    put(facts_, "system", steps_.system().versions().systemVersionString());
    tell("minimumSystem", value("LSMinimumSystemVersion"));
    put(facts_, "compatible", !steps_.systemAlert());
    if (steps_.systemAlert())
      note("error", "LSMinimumSystemVersion", "the product is refused on this computer",
           "name the oldest kernel that runs it as LSMinimumSystemVersion-linux: 6.1");
  }

  void checkSignature() {
    const OptionalText signature = value("CFBundleSignature");
    tell("signature", signature);
    if (!signature) {
      note("error", "CFBundleSignature",
           "it is missing: the installer ends with \"missing product signature\"",
           "add four characters of your own: FOOX");
    } else if (fourCharCodeFromText(*signature) == kUndeclaredSignature) {
      note("warning", "CFBundleSignature",
           "\"????\" names no program: a copy that runs is neither found nor quit",
           "take four characters of your own: FOOX");
    } else if (fourCharCodeFromText(*signature) == 0) {
      note("error", "CFBundleSignature",
           "it is not four characters that can be typed: a copy that runs is neither found nor quit",
           "take four characters of your own: FOOX");
    }
    if (const auto* codes = steps_.arguments().list(KTInstallerKeyQuitCode))
      put(facts_, "quits", PropertyArray(codes->begin(), codes->end()));
  }

  void checkIcon() {
    const OptionalText path = bundleIconFile(steps_.bundles(), bundle_);
    if (!path) {
      const char* problem = value("CFBundleIconFile") ? "no such file is in its resources"
                                                      : "it is missing: a general icon is shown";
      return note("warning", "CFBundleIconFile", problem, "name an icns or PNG file in Contents/Resources");
    }
    const auto bytes = steps_.system().files().readFile(*path, kLargestIcon);
    std::set<int> sizes;
    for (const IconPicture& picture : picturesInIcon(bytes.value_or(std::string())))
      sizes.insert(picture.size);
    PropertyArray told;
    for (const int size : sizes) told.emplace_back(size);
    put(facts_, "icon", PropertyDictionary{{"file", *path}, {"sizes", told}});
    if (sizes.empty())
      return note("warning", "CFBundleIconFile", "menus get no picture of it: none in it is a square PNG",
                  "make an icns file of PNG pictures, or a square PNG");
    for (const int size : kWantedIconSizes) {
      if (!sizes.contains(size))
        note("note", "CFBundleIconFile", Text("no picture of " + std::to_string(size) + " points"),
             "add one; else desktops scale another");
    }
  }

  void checkProgram() {
    const OptionalText name = value("CFBundleExecutable");
    if (!name) note("error", "CFBundleExecutable", "it is missing", "name the program in Contents/Linux");
    const OptionalText program = steps_.bundles().executablePath(bundle_);
    const auto flags = steps_.system().items().flags(bundle_);
    const bool starts = flags && flags->isNativeApplication;
    PropertyDictionary told = {{"starts", starts}};
    if (program) put(told, "path", *program);
    put(facts_, "program", told);
    if (!program && name)
      note(
          "error", "CFBundleExecutable", "no such file is in Contents/Linux or Contents/MacOS",
          "put the program into Contents/Linux, or name another for this system as CFBundleExecutable-linux");
    if (program && !starts) {
      const bool isExecutable = ::access(program->bytes().c_str(), X_OK) == 0;
      note("error", "CFBundleExecutable",
           isExecutable ? "the program is for another system or another kind of processor"
                        : "the program is not executable",
           isExecutable ? "put one for this system into Contents/Linux" : "chmod +x");
    }
  }

  // What is not in the bundle does not come along.
  void checkLinks() {
    const Text top(fs::weakly_canonical(bundle_.bytes()).string());
    std::error_code problem;
    const auto options = fs::directory_options::skip_permission_denied;
    for (auto entry = fs::recursive_directory_iterator(bundle_.bytes(), options, problem);
         !problem && entry != fs::recursive_directory_iterator(); entry.increment(problem)) {
      if (!entry->is_symlink(problem)) continue;
      const fs::path target = fs::read_symlink(entry->path(), problem);
      const Text end(fs::weakly_canonical(entry->path().parent_path() / target, problem).string());
      if (target.is_absolute() || !(end == top || end.hasPrefix(top + Text("/"))))
        note("warning", Text(entry->path().lexically_relative(bundle_.bytes()).string()),
             "the link leads out of the bundle", "put what it leads to into the bundle, and link to that");
    }
  }

  void tellTexts() {
    TerminalFace& face = steps_.face();
    put(facts_, "texts",
        PropertyDictionary{{"title", face.window.title()},
                           {"name", face.nameField.stringValue()},
                           {"intro", face.introField.stringValue()},
                           {"explanation", face.explanationField.stringValue()}});
  }

  InstallerSteps& steps_;
  const Text bundle_;
  PropertyDictionary info_;
  PropertyDictionary facts_;
  PropertyArray findings_;
  bool hasErrors_ = false;
};

}  // namespace

PropertyDictionary checkOf(InstallerSteps& steps, const Text& bundle) {
  return Checking(steps, bundle).made();
}

}  // namespace halvorn
