// Makes dynamic colors, and keeps the one that all share.
//
//   KTDynamicColorClass colors{services};
//   field.setTextColor(colors.redWarningTextColor());
//
// One object is made at the root of the program. Thread: main. The services must outlive it and its colors.
#pragma once

#include <memory>

#include "KTStuff/KTClasses/KTDynamicColor.h"

namespace halvorn {

class KTDynamicColorClass {
 public:
  // The services must outlive this object and its colors.
  explicit KTDynamicColorClass(const KTDynamicColorServices& services) : services_(services) {}
  KTDynamicColorClass(const KTDynamicColorClass&) = delete;
  KTDynamicColorClass& operator=(const KTDynamicColorClass&) = delete;

  // The dark color may be null.
  [[nodiscard]] std::shared_ptr<KTDynamicColor> lightColor(ColorPointer lightColor, ColorPointer darkColor);
  // For warnings: a darker, pure red on light backgrounds, a brighter, slightly orange one on dark ones.
  // Always the same object, made at the first call.
  [[nodiscard]] std::shared_ptr<KTDynamicColor> redWarningTextColor();

  // Archives are decoded by class: what is no color does not become a variant.
  [[nodiscard]] static constexpr bool supportsSecureCoding() { return true; }
  // Never null; a variant that is missing from the archive, or no color, is null.
  [[nodiscard]] std::shared_ptr<KTDynamicColor> initWithCoder(const KeyedDecoder& decoder);
  // For decoders: dynamic colors and plain ones. This object must outlive them.
  [[nodiscard]] KeyedDecoder::Classes decodableClasses();

 private:
  const KTDynamicColorServices services_;
  std::shared_ptr<KTDynamicColor> redWarningTextColor_;
};

}  // namespace halvorn
