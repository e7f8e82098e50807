#include "KTStuff/KTClasses/KTUtilitiesTheme.h"

namespace halvorn {

KTUtilitiesTheme::KTUtilitiesTheme(const KTUtilitiesVersions& versions, const Defaults& defaults,
                                   InterfaceStyleSetting& interfaceStyle)
    : versions_(versions),
      defaults_(defaults),
      interfaceStyle_(interfaceStyle),
      self_(std::make_shared<KTUtilitiesTheme*>(this)) {}

bool KTUtilitiesTheme::darkMenuTheme() {
  if (!versions_.yosemiteOrNewer()) return false;
  if (!isThemeObserverInstalled_) {
    isThemeObserverInstalled_ = true;
    interfaceStyle_.installChangeHandler([weakSelf = std::weak_ptr(self_)] {
      if (const auto self = weakSelf.lock()) (*self)->darkModeChanged();
    });
  }
  // A style in the defaults is the person's word for this program and wins over that of the desktop.
  if (const auto style = defaults_.objectForKey("AppleInterfaceStyle")) return *style == "Dark";
  return interfaceStyle_.current() == Text("Dark");
}

bool KTUtilitiesTheme::darkAppearance() { return versions_.mojaveOrNewer() && darkMenuTheme(); }

}  // namespace halvorn
