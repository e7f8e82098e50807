// Where the product goes when nobody named a place: where the person keeps it already, else into the
// Applications folder; and whether a place can be written without administrator rights.
//
// Thread: start-up asks on the main thread, the install worker on its own; no state is kept between calls.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "Core/FourCharCode.h"
#include "Core/Text.h"

namespace halvorn {

class FileManager;
class KTProcess;
class KTProcessClass;
class Log;
class SearchPaths;
class Workspace;

struct DestinationChoiceServices {
  KTProcessClass& processes;
  FileManager& files;
  const SearchPaths& searchPaths;
  const Workspace& workspace;
  const Log& log;
  // The "productCode" list of the argument dictionary; null when there is none.
  std::function<const std::vector<Text>*()> productCodes;
  // The next random number, for names of probe files.
  std::function<std::uint32_t()> randomNumber;
};

// What a destination was chosen for.
enum class DestinationReason {
  Given,               // the arguments name it
  GivenOneIsUnusable,  // the arguments name one whose folder does not exist, so it is the Applications folder
  LoginItem,           // the product starts there when the person logs in
  RunningCopy,         // the product runs from there
  ApplicationsFolder,  // nobody keeps the product yet
};

struct PreferredDestination {
  Text path;
  DestinationReason reason;
};

class DestinationChoice {
 public:
  explicit DestinationChoice(DestinationChoiceServices services);

  // The path of the bundle to replace; nullopt when the person keeps no copy in a fit place.
  // Logs: "autolaunch = %@".
  [[nodiscard]] OptionalText findPreferredDestinationFor(const Text& name);
  // The same, and what it was found by.
  [[nodiscard]] std::optional<PreferredDestination> preferredDestinationFor(const Text& name);
  // The path of the first login item whose file name begins with the name ("Foo" finds "FooBar.app" too).
  [[nodiscard]] OptionalText autoLaunchPathFor(const Text& name) const;
  // The path of a running copy of the product, never of this program itself.
  [[nodiscard]] OptionalText pathToProcessToReplace();
  // A copy that must not be the destination: a development build, a copy on an
  // installation volume or in the Trash.
  [[nodiscard]] bool isInUnsupportedFolder(const OptionalText& path) const;

  // The Applications folder to install into: that of all users when it can be written, else the person's own
  // when that exists and can, else that of all users after all. Makes no folder. Logs: "Can't write to
  // /Applications, checking ~/Applications"; "User applicationsDirectory: %@".
  [[nodiscard]] Text applicationsDirectory() const;

  // Whether an item can be made or replaced at the path without administrator rights. A folder
  // that does not exist yet is decided on the nearest one above it. Logs: "Cannot write to
  // item %@"; "Cannot write to folder %@".
  [[nodiscard]] bool canWriteToPath(const Text& path) const;
  [[nodiscard]] bool canWriteToFileOrDirectory(const Text& path) const;
  // Whether the file opens for reading and writing.
  [[nodiscard]] bool canWriteToFile(const Text& path) const;
  // Whether a probe file can be made in the folder; it is removed again.
  [[nodiscard]] bool canWriteToDirectory(const Text& path);

  // The path for people: "~" for the home folder, the names the file browser shows. For display only.
  [[nodiscard]] Text localizedPath(const Text& path) const;
  [[nodiscard]] Text recursiveLocalizedPath(const Text& path) const;

 private:
  // The first running process of that kind that is not this program and lies in a fit place.
  [[nodiscard]] std::shared_ptr<KTProcess> firstProcessToReplace(
      const std::function<bool(FourCharCode signature)>& matches);
  [[nodiscard]] bool isOnVolume(const Text& path) const;

  DestinationChoiceServices services_;
};

}  // namespace halvorn
