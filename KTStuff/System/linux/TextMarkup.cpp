// Markup.
#include "KTStuff/System/Parts.h"
#include "Platform/text/posix/XmlHtmlText.h"

namespace halvorn {
namespace {

struct Markup {
  explicit Markup(KTSystem&) {}
  const XmlHtmlText html;
};

}  // namespace

const HtmlText& KTSystem::htmlText() { return parts_->of<Markup>().html; }

}  // namespace halvorn
