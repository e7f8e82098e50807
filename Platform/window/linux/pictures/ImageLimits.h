// What a picture that others made may cost.
#pragma once

#include <cstddef>

namespace halvorn {

inline constexpr std::size_t kLargestImageFile = 32UL * 1024 * 1024;
inline constexpr int kLargestSide = 4096;  // pixels
inline constexpr int kMostIconSizes = 64;  // entries of one icon file

}  // namespace halvorn
