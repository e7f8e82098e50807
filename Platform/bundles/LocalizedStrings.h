// The installer's texts in the user's language.
#pragma once

#include "Core/Text.h"

namespace halvorn {

class LocalizedStrings {
 public:
  virtual ~LocalizedStrings() = default;
  // The translation of the key, the English text; the key itself when there is none. Thread: any.
  [[nodiscard]] virtual Text localized(const Text& key) const = 0;
};

}  // namespace halvorn
