// A picture of the system's. For sources in Objective-C++ alone.
#pragma once

#import <AppKit/AppKit.h>

#include "Platform/window/Images.h"

namespace halvorn {

class MacImage : public Image {
 public:
  explicit MacImage(NSImage* image) : image_([image retain]) {}
  ~MacImage() override { [image_ release]; }
  MacImage(const MacImage&) = delete;
  MacImage& operator=(const MacImage&) = delete;
  [[nodiscard]] NSImage* image() const { return image_; }

 private:
  NSImage* const image_;
};

// nil for null, and for what another adapter made.
[[nodiscard]] inline NSImage* imageOf(const ImagePointer& image) {
  const auto* const own = dynamic_cast<const MacImage*>(image.get());
  return own != nullptr ? own->image() : nil;
}

}  // namespace halvorn
