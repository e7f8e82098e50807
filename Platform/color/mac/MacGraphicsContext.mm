#include "Platform/color/mac/MacGraphicsContext.h"

#import <AppKit/AppKit.h>

#include "Platform/running/mac/Conversions.h"

namespace halvorn {
namespace {

NSColor* colorOf(const DeviceColor& color) {
  return [NSColor colorWithDeviceRed:color.red green:color.green blue:color.blue alpha:color.alpha];
}

}  // namespace

void MacGraphicsContext::setStrokeColor(const DeviceColor& color) {
  attempted([&] { [colorOf(color) setStroke]; });
}

void MacGraphicsContext::setFillColor(const DeviceColor& color) {
  attempted([&] { [colorOf(color) setFill]; });
}

}  // namespace halvorn
