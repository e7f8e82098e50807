#include "KTStuff/KTClasses/KTDynamicColorClass.h"

#include <utility>

#include "KTStuff/KTClasses/PlainColor.h"

namespace halvorn {

std::shared_ptr<KTDynamicColor> KTDynamicColorClass::lightColor(ColorPointer lightColor,
                                                                ColorPointer darkColor) {
  return std::make_shared<KTDynamicColor>(services_, std::move(lightColor), std::move(darkColor));
}

std::shared_ptr<KTDynamicColor> KTDynamicColorClass::redWarningTextColor() {
  if (!redWarningTextColor_) {
    redWarningTextColor_ = lightColor(PlainColor::calibratedRGB(0.75, 0.0, 0.0, 1.0),
                                      PlainColor::calibratedRGB(1.0, 0.2, 0.0, 1.0));
  }
  return redWarningTextColor_;
}

std::shared_ptr<KTDynamicColor> KTDynamicColorClass::initWithCoder(const KeyedDecoder& decoder) {
  ColorPointer aquaColor = decoder.decodeObjectOfClass<Color>("aquaColor");
  ColorPointer darkAquaColor = decoder.decodeObjectOfClass<Color>("darkAquaColor");
  return lightColor(std::move(aquaColor), std::move(darkAquaColor));
}

KeyedDecoder::Classes KTDynamicColorClass::decodableClasses() {
  return {{KTDynamicColor::kArchivedClass,
           [this](const KeyedDecoder& decoder) { return initWithCoder(decoder); }},
          {PlainColor::kArchivedClass, PlainColor::initWithCoder}};
}

}  // namespace halvorn
