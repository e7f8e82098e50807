// Makes a bundle known to the desktop: a desktop entry and icons under $XDG_DATA_HOME.
//
// Names and paths may hold anything; what cannot be written as the desktop's formats want it is refused. The
// files of other programs are never touched: the entry's name begins with "halvorn-app-".
// Why: docs/decisions/010-how-a-bundle-is-shown.md
#pragma once

#include <map>
#include <string>
#include <vector>

#include "Core/PropertyValue.h"
#include "Core/Text.h"
#include "Platform/bundles/linux/launching/IconPictures.h"

namespace halvorn {

class Bundles;
class Launcher;
class XdgFolders;

namespace RegistrationStatus {
inline constexpr int kRegistered = 0;
inline constexpr int kNotWritten = -20;           // a file could not be written
inline constexpr int kNotFound = -43;             // nothing is at the path
inline constexpr int kUnusablePath = -50;         // a path that no desktop entry can name
inline constexpr int kNotAnApplication = -10811;  // no bundle with a program
}  // namespace RegistrationStatus

class BundleRegistration {
 public:
  // Without a drawing, an icon whose format desktops do not know is left out.
  BundleRegistration(const Bundles& bundles, const XdgFolders& folders, const Launcher& launcher,
                     IconDrawing drawing);

  // One of the statuses above. A second registration of the same application replaces the first.
  [[nodiscard]] int registerBundle(const Text& bundlePath) const;
  // The entry and the icons that are there for this bundle; none when the entry is another one's, of the same
  // application in another place perhaps.
  [[nodiscard]] std::vector<std::string> filesOf(const Text& bundlePath) const;
  // Has the desktop look again.
  void refreshDatabase() const;

 private:
  // The bundle's pictures in the hicolor theme; "" when none could be put there, else the icon's name.
  [[nodiscard]] std::string installIcons(const Text& bundlePath, const std::string& iconName) const;
  [[nodiscard]] std::vector<IconPicture> picturesOf(const Text& bundlePath) const;

  const Bundles& bundles_;
  const XdgFolders& folders_;
  const Launcher& launcher_;
  IconDrawing drawing_;
};

// The names that the entry shows, by the locale as entries write it, "" for that without one. One that cannot be
// written is "" itself.
[[nodiscard]] std::map<std::string, std::string> entryNamesOf(const Text& bundlePath,
                                                              const PropertyDictionary& info);

// The path in the text of a URL: what follows "file://" with percent escapes
// resolved; any other text is the path.
[[nodiscard]] Text pathFromUrlText(const Text& urlText);

}  // namespace halvorn
