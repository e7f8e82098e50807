// No translations: the English texts.
#pragma once

#include "Platform/bundles/LocalizedStrings.h"

namespace halvorn {

class NullLocalizedStrings : public LocalizedStrings {
 public:
  Text localized(const Text& key) const override { return key; }
};

}  // namespace halvorn
