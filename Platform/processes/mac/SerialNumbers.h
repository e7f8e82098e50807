// Serial numbers as the system has them, and back. For sources in Objective-C++ alone.
#pragma once

#import <ApplicationServices/ApplicationServices.h>

#include "Platform/processes/ProcessSource.h"

namespace halvorn {

[[nodiscard]] inline ::ProcessSerialNumber systemNumber(ProcessSerialNumber number) {
  return {number.high, number.low};
}
[[nodiscard]] inline ProcessSerialNumber numberOf(const ::ProcessSerialNumber& number) {
  return {number.highLongOfPSN, number.lowLongOfPSN};
}

}  // namespace halvorn
