// Well-formed markup in small letters, with a handful of entities; anything else is text.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "Platform/text/HtmlText.h"

namespace halvorn {

class FakeHtmlText : public HtmlText {
 public:
  HtmlAnswer read(const Text& html, HtmlVisitor& visitor) const override {
    if (answer != HtmlAnswer::Read) return answer;
    const std::string page = html.bytes();
    std::string text;
    const auto flush = [&] {
      if (!text.empty()) visitor.characters(Text(text));
      text.clear();
    };
    for (std::size_t i = 0; i < page.size();) {
      const std::size_t end = page.find(page[i] == '<' ? '>' : ';', i);
      if (page[i] == '<' && end != std::string::npos) {
        flush();
        tag(page.substr(i + 1, end - i - 1), visitor);
        i = end + 1;
      } else if (page[i] == '&' && end != std::string::npos &&
                 entities.contains(page.substr(i + 1, end - i - 1))) {
        text += entities.at(page.substr(i + 1, end - i - 1));
        i = end + 1;
      } else {
        text += page[i++];
      }
    }
    flush();
    return HtmlAnswer::Read;
  }

  OptionalText importedText(const Text&) const override { return imported; }

  HtmlAnswer answer = HtmlAnswer::Read;  // what every reading comes to
  OptionalText imported = {};            // what an importer makes of every page; nullopt: there is none
  std::map<std::string, std::string> entities = {
      {"amp", "&"},       {"lt", "<"},          {"gt", ">"},  {"quot", "\""},
      {"nbsp", "\u00A0"}, {"eacute", "\u00E9"}, {"#65", "A"}, {"#x1F600", "\U0001F600"}};

 private:
  // "p", "/p", "p class=x" and "br/".
  static void tag(std::string name, HtmlVisitor& visitor) {
    const bool isEnd = name.starts_with('/');
    if (isEnd) name.erase(0, 1);
    const bool isEmpty = name.ends_with('/') || name == "br" || name == "hr";
    name = name.substr(0, name.find_first_of(" /"));
    if (!isEnd) visitor.startElement(name);
    if (isEnd || isEmpty) visitor.endElement(name);
  }
};

}  // namespace halvorn
