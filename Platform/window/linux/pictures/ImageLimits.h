// What a picture that others made may cost.
#pragma once

namespace halvorn {

inline constexpr long long kLargestImageFile = 32LL * 1024 * 1024;
inline constexpr int kLargestSide = 4096;  // pixels
inline constexpr int kMostIconSizes = 64;  // entries of one icon file

}  // namespace halvorn
