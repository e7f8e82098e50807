// Markup, through the real parser.
#include "KTStuff/CocoaExtensions/StringExtensions.h"
#include "Platform/text/posix/XmlHtmlText.h"
#include "tests/fuzz/FuzzInput.h"

using namespace halvorn;

namespace {

// Every start has its end, in order.
class Balance : public HtmlVisitor {
 public:
  void startElement(std::string_view name) override { open_.emplace_back(name); }
  void endElement(std::string_view name) override {
    require(!open_.empty() && open_.back() == name, "every end has its start");
    open_.pop_back();
  }
  void characters(const Text& text) override { require(!text.isEmpty(), "pieces are not empty"); }
  [[nodiscard]] bool isEven() const { return open_.empty(); }

 private:
  std::vector<std::string> open_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const XmlHtmlText html;
  const Text page = FuzzInput(data, size).text();
  Balance balance;
  const HtmlAnswer answer = html.read(page, balance);
  require(answer != HtmlAnswer::Read || balance.isEven(), "every start has its end");
  const Text text = StringExtensions::stringByExpandingHTMLEntities(page, html);
  require(text.isSameObject(page) || text.isEmpty() || (text.at(0) != u'\n' && text.units().back() != u'\n'),
          "no line break is left at either end");
  return 0;
}
