// A moment in time.
#pragma once

namespace halvorn {

// Seconds since 1 January 1970, 00:00 UTC, with fractions.
struct Date {
  double secondsSince1970 = 0.0;  // negative before that

  friend bool operator==(const Date&, const Date&) = default;
};

}  // namespace halvorn
