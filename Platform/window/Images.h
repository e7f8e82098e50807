// Pictures: product icons and marks.
#pragma once

#include <memory>
#include <optional>

#include "Core/Text.h"

namespace halvorn {

// A decoded picture. What is inside belongs to the adapter that made it.
class Image {
 public:
  virtual ~Image() = default;
};
using ImagePointer = std::shared_ptr<const Image>;  // null for none

class Images {
 public:
  virtual ~Images() = default;
  // The picture in the file (icns with all its sizes, png, svg ...); null when it is missing,
  // unreadable or hostile. Thread: main.
  [[nodiscard]] virtual ImagePointer imageFromFile(const Text& path) = 0;
  // A picture of the installer's own resources by name, without extension
  // ("AlertStopIcon"); null when missing.
  [[nodiscard]] virtual ImagePointer imageNamed(const Text& name) = 0;
  // The icon the desktop shows for the item at the path, at least that of some application for a bundle; null
  // when there is no item, or the desktop has no icon for it.
  [[nodiscard]] virtual ImagePointer iconForFile(const Text& path) = 0;
};

}  // namespace halvorn
