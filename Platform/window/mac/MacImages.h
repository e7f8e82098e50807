// Pictures, as AppKit reads them.
#pragma once

#include "Platform/window/Images.h"

namespace halvorn {

class MacImages : public Images {
 public:
  // Those by name lie in the folder, or are the system's.
  explicit MacImages(const Text& resourcesFolder) : resourcesFolder_(resourcesFolder) {}
  ImagePointer imageFromFile(const Text& path) override;
  ImagePointer imageNamed(const Text& name) override;
  ImagePointer iconForFile(const Text& path) override;

 private:
  const Text resourcesFolder_;
};

}  // namespace halvorn
