// Texts, by Foundation and the keyboard of the person.
#include "KTStuff/CocoaExtensions/StringExtensionsPatterns.h"
#include "KTStuff/CocoaExtensions/StringExtensionsVirtualCharacters.h"
#include "Platform/text/mac/MacDigests.h"
#include "Platform/text/mac/MacFourCharCodes.h"
#include "Platform/text/mac/MacHtmlText.h"
#include "Platform/text/mac/MacKeyboard.h"
#include "Platform/text/mac/MacLocalizedDates.h"
#include "Platform/text/mac/MacRegex.h"
#include "Platform/text/mac/MacTextCodecs.h"
#include "Platform/text/mac/MacUnicode.h"
#include "System/Parts.h"

namespace halvorn {
namespace {

struct Tables {
  explicit Tables(KTSystem&) {}
  const MacUnicode unicode;
  const MacLocalizedDates dates;
  const MacDigests digests;
  const MacFourCharCodes codes;
  const MacTextCodecs codecs;
  const MacHtmlText html;
  const MacKeyboard keyboard;
  StringExtensions::VirtualCharacters characters;
};

struct Patterns {
  explicit Patterns(KTSystem& system) : replacing(expressions, system.clock(), system.log()) {}
  const MacRegex regex;
  const KTRegularExpression expressions{[this] { return &regex; }};
  const StringExtensions::RegexReplacing replacing;
};

}  // namespace

const Unicode& KTSystem::unicode() { return parts_->of<Tables>().unicode; }
const LocalizedDates& KTSystem::dates() { return parts_->of<Tables>().dates; }
const Digests& KTSystem::digests() { return parts_->of<Tables>().digests; }
const FourCharCodes& KTSystem::fourCharCodes() { return parts_->of<Tables>().codes; }
const TextCodecs& KTSystem::textCodecs() { return parts_->of<Tables>().codecs; }
const HtmlText& KTSystem::htmlText() { return parts_->of<Tables>().html; }
const Keyboard& KTSystem::keyboard() { return parts_->of<Tables>().keyboard; }
StringExtensions::VirtualCharacters& KTSystem::virtualCharacters() { return parts_->of<Tables>().characters; }
const KTRegularExpression& KTSystem::regularExpressions() { return parts_->of<Patterns>().expressions; }
const StringExtensions::RegexReplacing& KTSystem::regexReplacing() {
  return parts_->of<Patterns>().replacing;
}

}  // namespace halvorn
