// HTML, read as a stream of what a page holds. Whatever is not well formed is
// understood as browsers do, roughly.
//
// Thread: any, where nothing else is said. Scripts are not run, and nothing is fetched.
#pragma once

#include <string_view>

#include "Core/Text.h"

namespace halvorn {

// Told what a page holds, in order.
class HtmlVisitor {
 public:
  virtual ~HtmlVisitor() = default;
  // The name in lower case. Elements that the page leaves out or does not end are started and ended all the
  // same; every start has its end.
  virtual void startElement(std::string_view name) = 0;
  virtual void endElement(std::string_view name) = 0;
  // Text with its entities resolved, in pieces of any length. What scripts and
  // style sheets consist of is not text.
  virtual void characters(const Text& text) = 0;
};

enum class HtmlAnswer { Read, NestedTooDeeply, Failed };  // what became of the markup

class HtmlText {
 public:
  virtual ~HtmlText() = default;
  // Fails: elements in elements in elements ... more than some hundreds deep;
  // the visitor has seen a part then.
  [[nodiscard]] virtual HtmlAnswer read(const Text& html, HtmlVisitor& visitor) const = 0;
  // What a system with an importer of its own takes for the text of the page.
  // Thread: main; nothing is imported elsewhere. Fails: there is no importer, or it reads no such page.
  [[nodiscard]] virtual OptionalText importedText(const Text& html) const {
    static_cast<void>(html);
    return std::nullopt;
  }
};

}  // namespace halvorn
