// Whether the dark interface style is in force. Thread: main.
#pragma once

#include <memory>

#include "KTStuff/KTClasses/KTUtilitiesVersions.h"
#include "Platform/bundles/Defaults.h"
#include "Platform/color/InterfaceStyleSetting.h"

namespace halvorn {

class KTUtilitiesTheme {
 public:
  // All that is passed in must outlive this object.
  KTUtilitiesTheme(const KTUtilitiesVersions& versions, const Defaults& defaults,
                   InterfaceStyleSetting& interfaceStyle);
  KTUtilitiesTheme(const KTUtilitiesTheme&) = delete;
  KTUtilitiesTheme& operator=(const KTUtilitiesTheme&) = delete;

  // Read afresh at each call.
  [[nodiscard]] bool darkMenuTheme();
  // Hears of changes of the style; there is nothing to do, since nothing is kept.
  void darkModeChanged() {}
  [[nodiscard]] bool darkAppearance();  // of the desktop

 private:
  const KTUtilitiesVersions& versions_;
  const Defaults& defaults_;
  InterfaceStyleSetting& interfaceStyle_;
  // What the handler holds instead of this object, so that a change that comes late finds nobody.
  const std::shared_ptr<KTUtilitiesTheme*> self_;
  bool isThemeObserverInstalled_ = false;
};

}  // namespace halvorn
