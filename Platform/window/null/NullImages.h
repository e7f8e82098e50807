// No pictures.
#pragma once

#include "Platform/window/Images.h"

namespace halvorn {

class NullImages : public Images {
 public:
  ImagePointer imageFromFile(const Text&) override { return nullptr; }
  ImagePointer imageNamed(const Text&) override { return nullptr; }
  ImagePointer iconForFile(const Text&) override { return nullptr; }
};

}  // namespace halvorn
