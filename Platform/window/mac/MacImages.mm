#include "Platform/window/mac/MacImages.h"

#include <sys/stat.h>

#include "Core/Paths.h"
#include "Platform/files/posix/BoundedFile.h"
#include "Platform/running/mac/Conversions.h"
#include "Platform/window/mac/MacImage.h"

namespace halvorn {
namespace {

constexpr std::size_t kLargestPicture = std::size_t{64} << 20;

ImagePointer made(NSImage* image) {
  const bool isUsable = image != nil && [image isValid];
  return isUsable ? std::make_shared<const MacImage>(image) : nullptr;
}

NSImage* imageIn(const Text& path) {
  const auto bytes = readRegularFile(path.bytes(), kLargestPicture);
  return bytes ? [[[NSImage alloc] initWithData:dataOf(*bytes)] autorelease] : nil;
}

}  // namespace

ImagePointer MacImages::imageFromFile(const Text& path) {
  return answered(ImagePointer(), [&] { return made(imageIn(path)); });
}

ImagePointer MacImages::imageNamed(const Text& name) {
  if (name.isEmpty() || name.find(u'/') != Text::npos) return nullptr;
  return answered(ImagePointer(), [&]() -> ImagePointer {
    NSImage* const image = imageIn(Paths::appending(resourcesFolder_, name + Text(".png")));
    NSImage* const larger = imageIn(Paths::appending(resourcesFolder_, name + Text("@2x.png")));
    if (image == nil) return made([NSImage imageNamed:stringOf(name)]);
    for (NSUInteger i = 0; i < [[larger representations] count]; ++i) {
      NSImageRep* const representation = [[larger representations] objectAtIndex:i];
      [representation setSize:[image size]];
      [image addRepresentation:representation];
    }
    return made(image);
  });
}

ImagePointer MacImages::iconForFile(const Text& path) {
  struct stat facts {};
  if (::stat(path.bytes().c_str(), &facts) != 0) return nullptr;
  return answered(ImagePointer(),
                  [&] { return made([[NSWorkspace sharedWorkspace] iconForFile:stringOf(path)]); });
}

}  // namespace halvorn
