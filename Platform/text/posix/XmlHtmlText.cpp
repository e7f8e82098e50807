#include "Platform/text/posix/XmlHtmlText.h"

#include <libxml/HTMLparser.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/text/posix/HtmlReferences.h"

namespace halvorn {
namespace {

struct Closer {
  void operator()(htmlParserCtxt* parser) const { htmlFreeParserCtxt(parser); }
};
using Parser = std::unique_ptr<htmlParserCtxt, Closer>;

std::string_view viewOf(const xmlChar* name) { return reinterpret_cast<const char*>(name); }

// One reading of one page. The parser is C: nothing may be thrown through it.
class Reading {
 public:
  Reading(HtmlVisitor& visitor, htmlParserCtxt* parser) : visitor_(visitor), parser_(parser) {}

  void start(const xmlChar* name) {
    if (open_.size() == static_cast<std::size_t>(XmlHtmlText::kDeepestNesting)) {
      return stop(HtmlAnswer::NestedTooDeeply);
    }
    guarded([&] {
      handOn();
      open_.push_back(viewOf(name));
      visitor_.startElement(open_.back());
    });
  }
  // Where a page breaks off within a tag, the parser forgets to end elements:
  // they end with the one around them.
  void end(const xmlChar* name) {
    guarded([&] {
      const auto found = std::find(open_.rbegin(), open_.rend(), viewOf(name));
      if (found != open_.rend()) endAllFrom(static_cast<std::size_t>(open_.rend() - found) - 1);
    });
  }
  // The parser hands out crumbs, at worst a byte at a time.
  void characters(const xmlChar* bytes, int length) {
    guarded([&] { pending_.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length)); });
  }
  void finish() {
    guarded([&] { endAllFrom(0); });
  }
  [[nodiscard]] HtmlAnswer answer() const { return answer_; }

 private:
  template <typename Action>
  void guarded(Action action) {
    if (answer_ != HtmlAnswer::Read) return;
    try {
      action();
    } catch (...) {
      stop(HtmlAnswer::Failed);
    }
  }
  void stop(HtmlAnswer answer) {
    if (answer_ == HtmlAnswer::Read) answer_ = answer;
    xmlStopParser(parser_);
  }

  void endAllFrom(std::size_t position) {
    handOn();
    while (open_.size() > position) {
      visitor_.endElement(open_.back());
      open_.pop_back();
    }
  }
  void handOn() {
    if (!pending_.empty()) visitor_.characters(Text(pending_));
    pending_.clear();
  }

  HtmlVisitor& visitor_;
  htmlParserCtxt* parser_;
  std::string pending_;
  HtmlAnswer answer_ = HtmlAnswer::Read;
  std::vector<std::string_view> open_;  // names that the parser keeps as long as it lives
};

xmlSAXHandler makeHandler() {
  xmlSAXHandler handler{};
  handler.startElement = [](void* reading, const xmlChar* name, const xmlChar**) {
    static_cast<Reading*>(reading)->start(name);
  };
  handler.endElement = [](void* reading, const xmlChar* name) { static_cast<Reading*>(reading)->end(name); };
  handler.characters = [](void* reading, const xmlChar* bytes, int length) {
    static_cast<Reading*>(reading)->characters(bytes, length);
  };
  handler.ignorableWhitespace = handler.characters;
  // The contents of scripts and style sheets.
  handler.cdataBlock = [](void*, const xmlChar*, int) {};
  return handler;
}

constexpr bool isHighSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
constexpr bool isLowSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }

// What the parser would leave out: control characters, lone surrogates, U+FFFE and U+FFFF.
constexpr bool isUnacceptable(char16_t unit) {
  const bool isControl = unit < 0x20 && unit != u'\t' && unit != u'\n' && unit != u'\r';
  return isControl || (unit & 0xF800) == 0xD800 || unit >= 0xFFFE;
}

// Resolved text that the parser takes for text, also within an attribute.
void appendAsText(std::u16string& units, std::u16string_view text) {
  for (const char16_t unit : text) {
    if (std::u16string_view(u"&<>\"'").find(unit) != std::u16string_view::npos) {
      units.append(u"&#").append(
          {static_cast<char16_t>(u'0' + unit / 10), static_cast<char16_t>(u'0' + unit % 10)});
      units.push_back(u';');
    } else {
      units.push_back(isUnacceptable(unit) && (unit & 0xF800) != 0xD800 ? u'\uFFFD' : unit);
    }
  }
}

// UTF-8 that the parser accepts in full, so that no text is lost. U+FFFD stands for what it would leave out.
// The parser knows the references of an older standard, so none is left to it.
std::string parseable(const Text& html) {
  const std::u16string_view source = html.units();
  std::u16string units;
  units.reserve(source.size() + source.size() / 8);
  for (std::size_t i = 0; i < source.size(); ++i) {
    const char16_t unit = source[i];
    if (unit == u'&') {
      const auto reference = htmlReferenceAt(source.substr(i));
      appendAsText(units, reference ? reference->text : u"&");
      if (reference) i += reference->length - 1;
    } else if (isHighSurrogate(unit) && i + 1 < source.size() && isLowSurrogate(source[i + 1])) {
      units.append(source, i++, 2);
    } else {
      units.push_back(isUnacceptable(unit) ? u'\uFFFD' : unit);
    }
  }
  return Text(std::move(units)).bytes();
}

}  // namespace

HtmlAnswer XmlHtmlText::read(const Text& html, HtmlVisitor& visitor) const {
  const std::string bytes = parseable(html);
  if (bytes.empty()) return HtmlAnswer::Read;
  const Parser parser(htmlNewParserCtxt());
  if (!parser || bytes.size() > std::numeric_limits<int>::max()) return HtmlAnswer::Failed;
  Reading reading(visitor, parser.get());
  *parser->sax = makeHandler();
  parser->userData = &reading;
  // Without a handler for documents nothing is built; what a page says of its own encoding is no longer true.
  const int options = HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING | HTML_PARSE_NONET | HTML_PARSE_IGNORE_ENC;
  xmlFreeDoc(htmlCtxtReadMemory(parser.get(), bytes.data(), static_cast<int>(bytes.size()), nullptr, "UTF-8",
                                options));
  reading.finish();
  return reading.answer();
}

}  // namespace halvorn
