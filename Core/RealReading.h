// Reading real numbers written in decimal digits: "-12.5e3".
//
// The result is the number of the type that lies nearest, of two equally near the even one. What is too large
// is infinite, what is too small is zero. The same in every locale.
#pragma once

#include <cstddef>
#include <string_view>

namespace halvorn {

template <typename Real>
struct RealReading {
  Real value = 0;          // 0 when no number stands there
  std::size_t length = 0;  // bytes read; 0 when no number stands there
};

// The number at the very start: a sign or none, digits with at most one point among them, an exponent or
// none. Words ("inf") are no numbers. Real is float or double.
template <typename Real>
[[nodiscard]] RealReading<Real> realAtStart(std::string_view bytes);

extern template RealReading<float> realAtStart<float>(std::string_view);    // made once
extern template RealReading<double> realAtStart<double>(std::string_view);  // likewise

}  // namespace halvorn
