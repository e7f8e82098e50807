#include "Platform/text/mac/MacFourCharCodes.h"

#include <CoreServices/CoreServices.h>

#include "Platform/running/mac/Conversions.h"
#include "Platform/running/mac/Held.h"

namespace halvorn {

FourCharCode MacFourCharCodes::codeOf(const Text& text) const {
  return answered(FourCharCode{0}, [&] { return UTGetOSTypeFromString((CFStringRef)stringOf(text)); });
}

Text MacFourCharCodes::textOf(FourCharCode code) const {
  return answered(Text(), [&] {
    const Held<CFStringRef> made(UTCreateStringForOSType(code));
    return halvorn::textOf((NSString*)made.get()).value_or(Text());
  });
}

}  // namespace halvorn
