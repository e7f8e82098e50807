// Where pictures come from: the part of the library that has the toolkit tells it. Without that there are none.
#pragma once

#include <string_view>
#include <utility>
#include <vector>

#include "Platform/bundles/linux/launching/IconPictures.h"
#include "Platform/window/Images.h"
#include "System/Parts.h"

namespace halvorn {

// Hands each question on, so that a process model can be made before it is known who answers.
class Pictures {
 public:
  explicit Pictures(KTSystem&) {}
  Images& images() { return forwarding_; }
  void use(Images& images, IconDrawing drawing) {
    forwarding_.images = &images;
    drawing_ = std::move(drawing);
  }
  [[nodiscard]] std::vector<IconPicture> drawnIcon(std::string_view bytes) const {
    return drawing_ ? drawing_(bytes) : std::vector<IconPicture>();
  }

 private:
  struct Forwarding : Images {
    ImagePointer imageFromFile(const Text& path) override {
      return images != nullptr ? images->imageFromFile(path) : nullptr;
    }
    ImagePointer imageNamed(const Text& name) override {
      return images != nullptr ? images->imageNamed(name) : nullptr;
    }
    ImagePointer iconForFile(const Text& path) override {
      return images != nullptr ? images->iconForFile(path) : nullptr;
    }
    Images* images = nullptr;
  };

  Forwarding forwarding_;
  IconDrawing drawing_;
};

}  // namespace halvorn
