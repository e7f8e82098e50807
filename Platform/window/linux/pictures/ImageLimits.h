// What a picture that others made may cost.
#pragma once

#include <cstddef>

namespace halvorn {

inline constexpr std::size_t kLargestImageFile = 32UL * 1024 * 1024;
inline constexpr int kLargestSide = 4096;          // pixels; larger ones are scaled down to that
inline constexpr int kLargestSideInFile = 16'384;  // what is larger yet is not even begun
inline constexpr int kMostIconSizes = 64;          // entries of one icon file

}  // namespace halvorn
