// Pictures from files, from the installer's own resources and from the desktop's icon theme.
#pragma once

#include "Platform/window/Images.h"

namespace halvorn {

class QtImages : public Images {
 public:
  // The folder that holds the installer's own pictures: Name.png with Name@2x.png, Name.icns or Name.svg.
  explicit QtImages(const Text& resourcesFolder) : resourcesFolder_(resourcesFolder) {}

  // Reads at most 32 MiB. Pictures larger than 4096 pixels on a side are scaled down to that; above 16384
  // they count as unreadable.
  [[nodiscard]] ImagePointer imageFromFile(const Text& path) override;
  [[nodiscard]] ImagePointer imageNamed(const Text& name) override;
  // The picture in the bundle where the item is one and has it; a folder's own icon when its ".directory"
  // file names one; else the icon of its kind in the icon theme. A bundle without any of these has the
  // picture of some application.
  [[nodiscard]] ImagePointer iconForFile(const Text& path) override;

 private:
  [[nodiscard]] ImagePointer iconOfBundle(const Text& path);

  Text resourcesFolder_;
};

}  // namespace halvorn
