// Lets the toolkit's own few texts (the menu of a document) come from the installer's table.
#pragma once

#include <QTranslator>

#include "Platform/bundles/LocalizedStrings.h"
#include "Platform/window/linux/QtText.h"

namespace halvorn {

class StringsTranslator : public QTranslator {
 public:
  // The strings must outlive it.
  explicit StringsTranslator(const LocalizedStrings& strings) : strings_(strings) {}

  [[nodiscard]] bool isEmpty() const override { return false; }
  [[nodiscard]] QString translate(const char*, const char* sourceText, const char*, int) const override {
    const Text key(sourceText);
    const Text found = strings_.localized(key);
    return found == key ? QString() : toQString(found);
  }

 private:
  const LocalizedStrings& strings_;
};

}  // namespace halvorn
