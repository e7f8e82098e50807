// Icons in formats that desktops do not know, drawn as those that they do.
#pragma once

#include <string_view>
#include <vector>

#include "Platform/bundles/linux/launching/IconPictures.h"

namespace halvorn {

// The picture in these bytes in the sizes that it fills, each in the middle of a square; empty when nobody can read it, or
// when it is harmful. Thread: any.
[[nodiscard]] std::vector<IconPicture> drawnIcon(std::string_view bytes);

}  // namespace halvorn
