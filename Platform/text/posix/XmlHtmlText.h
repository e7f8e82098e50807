// HtmlText, answered by libxml2's HTML parser, which hands on what it reads and keeps no tree of it.
#pragma once

#include "Platform/text/HtmlText.h"

namespace halvorn {

class XmlHtmlText : public HtmlText {
 public:
  // The parser compares an end with every open element, so without a limit small pages could take for ever.
  static constexpr int kDeepestNesting = 512;

  [[nodiscard]] HtmlAnswer read(const Text& html, HtmlVisitor& visitor) const override;
};

}  // namespace halvorn
