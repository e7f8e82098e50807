// The command line as the argument dictionary, and its completion from the product bundle.
//
// The steps of completion are called by Startup in the order they stand here; each writes back what it found.
// Thread: main, during start-up.
#pragma once

#include <optional>
#include <vector>

#include "Core/PropertyValue.h"
#include "Core/Text.h"
#include "Sources/ArgumentDictionary.h"
#include "Sources/DestinationChoice.h"

namespace halvorn {

class FileManager;
class KTUtilities;
class Log;

class InstallerArguments {
 public:
  InstallerArguments(ArgumentDictionary& arguments, const FileManager& files, const Log& log);

  // Fills the dictionary from the argument list, program path included: an element that begins with "-" is
  // the key for the elements after it, until the next key. Logs: "arguments: %@".
  void extract(const std::vector<Text>& argumentList);

  // Without "sourcePath", takes the innermost ".app" above the installer's own bundle. False when there is
  // none. Logs: "shortened path = %@".
  [[nodiscard]] bool completeSourcePath(const Text& installerBundlePath);
  // Without "productName", takes the source bundle's file name. False when that yields no text at all.
  [[nodiscard]] bool completeProductName();
  // "version", else the bundle's short version; nullopt when neither says one. Not written back.
  [[nodiscard]] OptionalText version(const PropertyDictionary& info) const;
  // "minSystemVersion", else the bundle's LSMinimumSystemVersion; nullopt when
  // neither says one. Not written back.
  [[nodiscard]] OptionalText minSystemVersion(const PropertyDictionary& info) const;
  // Chooses the destination where none was given, or where the given one has no folder to go into; puts it
  // into the wrapper's folder where the wrapper is usable; drops an unusable wrapper. Logs: "wrapper = %@".
  void completeDestination(DestinationChoice& choice);
  // What the destination was chosen for; nullopt before that.
  [[nodiscard]] std::optional<DestinationReason> destinationReason() const { return destinationReason_; }
  // Drops "documentationPath" when nothing is there.
  void completeDocumentation();
  // Product codes from the bundle's signature where none were given; the quit codes get them appended. False
  // when the product has no code at all. Logs: "Updated arguments: %@".
  [[nodiscard]] bool completeCodes(const PropertyDictionary& info);

 private:
  [[nodiscard]] PreferredDestination chosenDestination(DestinationChoice& choice) const;
  [[nodiscard]] Text insideWrapper(const Text& destination) const;

  ArgumentDictionary& arguments_;
  const FileManager& files_;
  const Log& log_;
  std::optional<DestinationReason> destinationReason_;
};

// The file name of the bundle without its extension; nullopt without a path. An empty name is a name.
[[nodiscard]] OptionalText productNameFromSourcePath(const OptionalText& sourcePath);

}  // namespace halvorn
