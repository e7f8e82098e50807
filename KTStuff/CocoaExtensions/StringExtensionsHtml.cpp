#include "KTStuff/CocoaExtensions/StringExtensionsHtml.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

namespace halvorn::StringExtensions {
namespace {

// Sorted.
constexpr std::string_view kBlocks[] = {
    "address",  "article", "aside",  "blockquote", "body",    "caption",  "center",     "dd",      "details",
    "dialog",   "dir",     "div",    "dl",         "dt",      "fieldset", "figcaption", "figure",  "footer",
    "form",     "h1",      "h2",     "h3",         "h4",      "h5",       "h6",         "header",  "hgroup",
    "hr",       "html",    "legend", "li",         "listing", "main",     "menu",       "nav",     "ol",
    "optgroup", "option",  "p",      "plaintext",  "pre",     "search",   "section",    "summary", "table",
    "tbody",    "tfoot",   "thead",  "tr",         "ul",      "xmp"};
constexpr std::string_view kHidden[] = {"head", "script", "style", "template", "title"};
constexpr std::string_view kPreformatted[] = {"listing", "plaintext", "pre", "textarea", "xmp"};
static_assert(std::is_sorted(std::begin(kBlocks), std::end(kBlocks)));
static_assert(std::is_sorted(std::begin(kHidden), std::end(kHidden)));
static_assert(std::is_sorted(std::begin(kPreformatted), std::end(kPreformatted)));

template <typename Names>
bool isOneOf(std::string_view name, const Names& names) {
  return std::binary_search(std::begin(names), std::end(names), name);
}

// A no-break space is none of them.
constexpr bool isCollapsible(char16_t unit) {
  return unit == u' ' || unit == u'\t' || unit == u'\n' || unit == u'\r' || unit == u'\f';
}

// Writes down what a page shows. Breaks, tabs and spaces are kept back until something follows them, so that
// none is left at the end.
class PlainText : public HtmlVisitor {
 public:
  void startElement(std::string_view name) override {
    if (isOneOf(name, kHidden)) ++hiddenDepth_;
    if (isOneOf(name, kBlocks)) endLine();
    if (isOneOf(name, kPreformatted)) {
      ++preformattedDepth_;
      last_ = LastUnit::StartOfPreformatted;
    }
    if (name == "br") breakLine();
    if (name == "tr") isCellBefore_ = false;
    if (name == "td" || name == "th") beginCell();
  }
  void endElement(std::string_view name) override {
    if (isOneOf(name, kBlocks)) endLine();
    if (isOneOf(name, kHidden) && hiddenDepth_ > 0) --hiddenDepth_;
    if (isOneOf(name, kPreformatted) && preformattedDepth_ > 0) --preformattedDepth_;
  }
  void characters(const Text& text) override {
    if (hiddenDepth_ > 0) return;
    for (const char16_t unit : text.units()) {
      if (preformattedDepth_ > 0) {
        addPreformatted(unit);
      } else if (isCollapsible(unit)) {
        isSpacePending_ = true;
      } else {
        add(unit);
      }
    }
  }

  [[nodiscard]] Text finish() && { return Text(std::move(result_)); }

 private:
  enum class LastUnit { Other, Return, StartOfPreformatted };

  void add(char16_t unit) {
    if (!result_.empty()) result_.append(breaksPending_, u'\n');
    result_.append(tabsPending_, u'\t');
    if (isSpacePending_ && !isLineEmpty_ && tabsPending_ == 0) result_.push_back(u' ');
    result_.push_back(unit);
    breaksPending_ = tabsPending_ = 0;
    isSpacePending_ = isLineEmpty_ = false;
  }
  // One break for "\r\n", none for the one that directly follows the start of the element.
  void addPreformatted(char16_t unit) {
    const LastUnit last = std::exchange(last_, unit == u'\r' ? LastUnit::Return : LastUnit::Other);
    if (unit != u'\r' && unit != u'\n') return add(unit);
    const bool isSecondHalf = last == LastUnit::Return && unit == u'\n';
    if (isSecondHalf) return;
    if (last != LastUnit::StartOfPreformatted) breakLine();
  }
  void breakLine() {
    if (hiddenDepth_ > 0) return;
    ++breaksPending_;
    isLineEmpty_ = true;
    isSpacePending_ = false;
    tabsPending_ = 0;
  }
  // One break, however many blocks begin and end here.
  void endLine() {
    if (!isLineEmpty_) breakLine();
  }
  void beginCell() {
    if (isCellBefore_) ++tabsPending_;
    isCellBefore_ = true;
  }

  std::u16string result_;
  std::size_t breaksPending_ = 0;
  std::size_t tabsPending_ = 0;
  bool isSpacePending_ = false;
  bool isLineEmpty_ = true;
  bool isCellBefore_ = false;  // in this table row
  int hiddenDepth_ = 0;
  int preformattedDepth_ = 0;
  LastUnit last_ = LastUnit::Other;
};

}  // namespace

Text stringByExpandingHTMLEntities(const Text& text, const HtmlText& html) {
  OptionalText imported = html.importedText(text);
  if (imported) return *imported == text ? text : *std::move(imported);
  PlainText visitor;
  if (html.read(text, visitor) != HtmlAnswer::Read) return text;
  Text result = std::move(visitor).finish();
  return result == text ? text : result;
}

}  // namespace halvorn::StringExtensions
