// Markup.
#include "Platform/text/posix/XmlHtmlText.h"
#include "System/Parts.h"

namespace halvorn {
namespace {

struct Markup {
  explicit Markup(KTSystem&) {}
  const XmlHtmlText html;
};

}  // namespace

const HtmlText& KTSystem::htmlText() { return parts_->of<Markup>().html; }

}  // namespace halvorn
