// The texts of a bundle's default table in the person's language.
#pragma once

#include "Platform/bundles/LocalizedStrings.h"

namespace halvorn {

class MacLocalizedStrings : public LocalizedStrings {
 public:
  explicit MacLocalizedStrings(const Text& bundlePath) : bundlePath_(bundlePath) {}
  Text localized(const Text& key) const override;

 private:
  const Text bundlePath_;
};

}  // namespace halvorn
