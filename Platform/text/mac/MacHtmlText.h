// HTML, read by the system's importer of attributed strings; in a stream by the library that both systems have.
#pragma once

#include "Platform/text/posix/XmlHtmlText.h"

namespace halvorn {

class MacHtmlText : public XmlHtmlText {
 public:
  static constexpr double kLongestImport = 5;  // seconds

  // Nothing that the page names is loaded. Fails also on another thread than the main one, where the system's importer
  // must not be called.
  [[nodiscard]] OptionalText importedText(const Text& html) const override;
};

}  // namespace halvorn
