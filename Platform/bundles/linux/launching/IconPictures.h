// The PNG pictures in icon files.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halvorn {

struct IconPicture {
  int size = 0;  // width and height
  std::string png;
};

// The square pictures of an icns file that are kept as PNG, or the one of a PNG file. Empty for anything
// else; broken pictures are left out.
[[nodiscard]] std::vector<IconPicture> picturesInIcon(std::string_view bytes);

// Makes such pictures of a file in any other format; empty when it can draw nothing from it. Thread: any.
using IconDrawing = std::function<std::vector<IconPicture>(std::string_view bytes)>;

// The width of a PNG file that is square, at most 1024, and complete; nullopt for anything else.
[[nodiscard]] std::optional<int> sizeOfSquarePng(std::string_view bytes);

}  // namespace halvorn
